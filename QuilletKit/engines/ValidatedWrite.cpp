#include "engines/ValidatedWrite.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "platform/TemporaryFile.hpp"

#include <fmt/format.h>

namespace quillet {
namespace {

using ValidationResult = PDFDocumentEngine::ValidationResult;

// The encrypted counterpart of PDFDocumentEngine::validateOutput, which refuses any file that
// needs a password: here needing one is the point, and opening with it is the test.
ValidationResult validateEncrypted(const std::filesystem::path& file, const std::string& password,
                                   int expectedPageCount) {
    auto document = PDFDocumentEngine::open(file, password);
    if (!document || !document->isEncrypted()) {
        return {false, "Could not re-open the generated PDF."};
    }
    if (document->pageCount() != expectedPageCount) {
        return {false, fmt::format("Page count mismatch ({} vs {}).", document->pageCount(),
                                   expectedPageCount)};
    }
    return {true, "OK"};
}

TemporaryFile reserveBeside(const std::filesystem::path& destination,
                            const std::string& unwritableFolderText) {
    try {
        return TemporaryFile::beside(destination);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(
            unwritableFolderText.empty() ? destination.filename().string() : unwritableFolderText);
    }
}

} // namespace

void writeValidated(const PDFDocument& document, const std::filesystem::path& destination,
                    int expectedPageCount, const PDFPasswords* passwords,
                    const std::string& unwritableFolderText,
                    const std::function<void(const std::filesystem::path&)>& proof) {
    auto temporary = reserveBeside(destination, unwritableFolderText);
    const auto writeFailed = PDFCoreError::writeFailed(destination.filename().string());
    try {
        if (passwords != nullptr) {
            document.write(temporary.path(), *passwords);
        } else {
            document.write(temporary.path());
        }
    } catch (const std::exception&) {
        throw writeFailed;
    }
    const auto check = passwords != nullptr
                           ? validateEncrypted(temporary.path(), passwords->user, expectedPageCount)
                           : PDFDocumentEngine::validateOutput(temporary.path(), expectedPageCount);
    if (!check.ok) {
        throw PDFCoreError::validationFailed(check.message);
    }
    if (proof) {
        proof(temporary.path());
    }
    try {
        temporary.commit(destination);
    } catch (const std::exception&) {
        throw writeFailed;
    }
}

} // namespace quillet
