// The page-level PDF document: open, unlock, pages, page copies, attributes, writing.
//
// A thin layer over qpdf's QPDF and QPDFPageDocumentHelper. The document owns its QPDF; pages
// handed out (PDFPage) refer into it and must not outlive it. Documents are move-only values; one
// document must not be used from two threads at once, different documents may.
//
// Opening repairs what qpdf can repair (a damaged or missing cross-reference table, junk before
// the header) without printing qpdf's warnings; when the catalog then leads to no page at all, the
// page objects found in the file become the pages, in file order, as viewers do. Only a file qpdf
// cannot make a document of at all fails. An encrypted file whose user password is not empty opens
// *locked*: it has no pages, no attributes and cannot be written until `unlock` succeeds with the
// user or the owner password. Every failure is a PDFDocumentError; qpdf's own exceptions never
// leave this class.
#pragma once

#include "platform/PDFDocumentError.hpp"
#include "platform/PDFPage.hpp"

#include <qpdf/QPDF.hh>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillet {

/// The document information fields. Texts are decoded to UTF-8 (PDFDocEncoding, or UTF-16 with
/// a byte-order mark); dates are the raw PDF date text ("D:20240131120000+05'30'"), parsed by
/// the caller. A field whose entry is missing or not a string is absent; an empty string is kept.
struct PDFDocumentAttributes {
    std::optional<std::string> title;
    std::optional<std::string> author;
    std::optional<std::string> subject;
    std::optional<std::string> keywords;
    std::optional<std::string> creator;
    std::optional<std::string> producer;
    std::optional<std::string> creationDate;
    std::optional<std::string> modificationDate;

    bool operator==(const PDFDocumentAttributes&) const = default;
};

/// Passwords for an encrypted write. Both are UTF-8; an empty user password makes a file that
/// opens without asking.
struct PDFPasswords {
    std::string user;
    std::string owner;
};

class PDFDocument {
  public:
    /// Opens the file at `path` with the empty password. Throws PDFDocumentError(cannotOpen) with
    /// qpdf's message (it names the file) when the file is missing, unreadable or beyond repair.
    static PDFDocument open(const std::filesystem::path& path);

    /// Opens a document held in memory; `description` stands in for the file name in messages.
    static PDFDocument open(std::string bytes, const std::string& description);

    /// A new document without pages, to copy pages into.
    static PDFDocument empty();

    PDFDocument(PDFDocument&&) noexcept;
    PDFDocument& operator=(PDFDocument&&) noexcept;
    ~PDFDocument();

    /// The file the document was opened from; empty for documents from memory or `empty()`.
    const std::filesystem::path& path() const { return path_; }

    bool isEncrypted() const;
    bool isLocked() const { return locked_; }

    /// Unlocks a locked document with its user or owner password by reading the file again with
    /// it. Answers whether the document is unlocked afterwards: a wrong password answers false and
    /// leaves it locked; a document that is not locked answers true and is left as it is.
    /// Throws PDFDocumentError(cannotOpen) only if the file itself fails on the second reading.
    bool unlock(const std::string& password);

    /// The password that unlocked the document ("" when none was needed), so that another reader
    /// of the same file (the renderer) can be given it.
    const std::string& password() const { return password_; }

    /// The number of pages; 0 while locked.
    int pageCount() const;

    /// The page at zero-based `index`. Throws std::out_of_range outside 0..pageCount()-1 (always
    /// while locked).
    PDFPage page(int index) const;

    /// Copies page `sourceIndex` of `source` and inserts the copy so that it becomes page `index`
    /// (pageCount() appends). The copy takes the page's resources, annotations and inherited
    /// attributes along. `source` may be this document (a duplicate). The source's page tree may
    /// be normalised on the way (inherited attributes moved onto its pages; what it shows is
    /// unchanged), and this document keeps the source's data alive until it is itself destroyed.
    /// Throws std::out_of_range for bad indices, PDFDocumentError(locked) when either document is
    /// locked, PDFDocumentError(damaged) when the page cannot be copied.
    void insertPageCopy(PDFDocument& source, int sourceIndex, int index);

    /// Removes the page at `index`. Throws std::out_of_range, or PDFDocumentError(damaged).
    void removePage(int index);

    /// The Info dictionary of the trailer; all fields absent while locked.
    PDFDocumentAttributes attributes() const;

    /// Replaces the Info dictionary with these fields (keys outside the eight are dropped); with
    /// every field absent the document has no Info dictionary. Throws PDFDocumentError(locked).
    void setAttributes(const PDFDocumentAttributes& attributes);

    /// Writes the document unencrypted (even when it was read from an encrypted file) with
    /// object streams generated and streams compressed. The file appears at `destination` in one
    /// rename, replacing any file there (the document's own source file included); on failure
    /// nothing is left behind and the destination is unchanged. Throws
    /// PDFDocumentError(writeFailed) naming the destination, or (locked).
    void write(const std::filesystem::path& destination) const;

    /// Like `write`, encrypted with AES-256 (revision 6) and every permission granted.
    void write(const std::filesystem::path& destination, const PDFPasswords& passwords) const;

    /// The bytes `write` would produce (with a fresh document ID).
    std::string dataRepresentation() const;

    /// The underlying document for object-level work. Throws PDFDocumentError(locked). qpdf
    /// calls made through it throw qpdf's exceptions; callers translate them.
    QPDF& qpdf() const;

  private:
    // Keeps, in destruction order, the pages copied from other documents, the QPDF and the
    // memory it reads from (qpdf reads lazily, so the sources of copied pages must outlive us).
    struct Storage {
        std::shared_ptr<const std::string> memory;
        std::shared_ptr<QPDF> qpdf;
        std::vector<std::shared_ptr<const Storage>> borrowed;
    };

    PDFDocument() = default;
    bool load(const std::string& password);
    void requireUnlocked() const;
    void writeTo(const std::filesystem::path& destination, const PDFPasswords* passwords) const;

    std::filesystem::path path_;
    std::string description_;
    std::shared_ptr<Storage> storage_;
    std::string password_;
    bool locked_ = false;
};

} // namespace quillet
