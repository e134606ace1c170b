#include "engines/PDFSecurityEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/ValidatedWrite.hpp"
#include "platform/PDFDocument.hpp"

namespace quillet {
namespace {

namespace fs = std::filesystem;

void report(const PDFSecurityEngine::Progress& progress, double fraction) {
    if (progress) {
        progress(fraction);
    }
}

// The folder the output goes into, made when missing. A protect job may name a folder that does
// not exist yet; failing to make it is failing to write the output.
void ensureOutputFolder(const fs::path& output) {
    const fs::path folder = output.parent_path();
    std::error_code error;
    if (folder.empty() || fs::exists(folder, error)) {
        return;
    }
    fs::create_directories(folder, error);
    if (error) {
        throw PDFCoreError::writeFailed(output.filename().string());
    }
}

// A damaged information dictionary is not worth losing the pages over: the copy then has none.
PDFDocumentAttributes informationOf(const PDFDocument& document) {
    try {
        return document.attributes();
    } catch (const PDFDocumentError&) {
        return {};
    }
}

} // namespace

void PDFSecurityEngine::removePassword(const fs::path& input, const fs::path& output,
                                       const std::string& password, const Progress& progress) {
    auto source = PDFDocumentEngine::openUnlock(input, password);
    auto unlocked = PDFDocument::empty();
    const int count = source.pageCount();
    for (int i = 0; i < count; ++i) {
        try {
            unlocked.insertPageCopy(source, i, unlocked.pageCount());
        } catch (const PDFDocumentError&) {
            // An unreadable page is left out; the others are still worth having.
        }
    }
    unlocked.setAttributes(informationOf(source));
    report(progress, 0.5);
    writeValidated(unlocked, output, unlocked.pageCount());
    report(progress, 1.0);
}

void PDFSecurityEngine::protect(const fs::path& input, const fs::path& output,
                                const std::string& userPassword, const std::string& ownerPassword,
                                const Progress& progress) {
    ensureOutputFolder(output);
    if (userPassword.empty()) {
        throw PDFCoreError::invalidInput("Enter an open password.");
    }
    auto document = PDFDocumentEngine::openUnlock(input, "");
    report(progress, 0.4);
    const PDFPasswords passwords{userPassword,
                                 ownerPassword.empty() ? userPassword : ownerPassword};
    writeValidated(document, output, document.pageCount(), &passwords);
    report(progress, 1.0);
}

} // namespace quillet
