// Adding and removing the password of a document.
//
// Both operations write a new file and never touch the input; the output appears (or replaces
// the input, when it is the same path) only after it has been read back: with the new password
// for `protect`, without any for `removePassword` (see ValidatedWrite).
#pragma once

#include <filesystem>
#include <functional>
#include <string>

namespace quillet {

class PDFSecurityEngine {
  public:
    using Progress = std::function<void(double)>;

    PDFSecurityEngine() = delete;

    /// Writes an unencrypted copy of `input`, opened with `password` (the user or the owner
    /// password; ignored for a file that is not encrypted). The copy has the input's pages at the
    /// same positions (unreadable pages skipped) and its information fields unchanged; nothing
    /// else of the document travels. Progress 0.5 before writing, 1.0 after.
    ///
    /// Throws PDFCoreError: fileNotFound, cannotOpen, wrongPassword ("Incorrect password.") from
    /// opening, in which case nothing is written; writeFailed naming the output;
    /// validationFailed when the written file does not read back.
    static void removePassword(const std::filesystem::path& input,
                               const std::filesystem::path& output, const std::string& password,
                               const Progress& progress = {});

    /// Writes `input` (opened without a password; a file with only an owner password opens)
    /// encrypted with AES-256 (revision 6) and every permission granted. The owner password is
    /// `ownerPassword`, or `userPassword` when that is empty. The document is written as it is:
    /// pages, information fields, outline, form and everything else. Progress 0.4 after opening,
    /// 1.0 after writing. The output's folder is created when missing.
    ///
    /// Throws PDFCoreError: invalidInput "Enter an open password." when `userPassword` is empty
    /// (before the input is opened); the errors of opening (wrongPassword for a file that needs
    /// an open password); writeFailed naming the output (also when its folder cannot be made);
    /// validationFailed when the written file does not open with `userPassword`.
    static void protect(const std::filesystem::path& input, const std::filesystem::path& output,
                        const std::string& userPassword, const std::string& ownerPassword,
                        const Progress& progress = {});
};

} // namespace quillet
