#include "engines/PDFDocumentEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDateParser.hpp"

#include <fmt/format.h>
#include <algorithm>

#include <qpdf/QPDF.hh>

#include <array>
#include <utility>

namespace quillet {

namespace {

bool fileExists(const std::filesystem::path& url) {
    std::error_code ignored;
    return std::filesystem::exists(url, ignored);
}

// The page model's view of a file: a file refused on purpose says why; any other failure to make
// a document of it is `cannotOpen`.
[[noreturn]] void rethrowOpening(const std::filesystem::path& url) {
    try {
        throw;
    } catch (const PDFDocumentError& error) {
        if (error.kind() == PDFDocumentError::Kind::refused) {
            throw PDFCoreError::invalidInput(error.what());
        }
        throw PDFCoreError::cannotOpen(
            url, error.kind() == PDFDocumentError::Kind::cannotOpen ? error.detail() : "");
    } catch (const std::exception&) {
        throw PDFCoreError::cannotOpen(url);
    }
}

PDFDocument openOrThrow(const std::filesystem::path& url) {
    try {
        return PDFDocument::open(url);
    } catch (const std::exception&) {
        rethrowOpening(url);
    }
}

bool tryUnlock(PDFDocument& document, const std::filesystem::path& url,
               const std::string& password) {
    try {
        return document.unlock(password) && !document.isLocked();
    } catch (const std::exception&) {
        rethrowOpening(url);
    }
}

using TextField = std::optional<std::string> PDFMetadataInfo::*;
using DateField = std::optional<std::chrono::system_clock::time_point> PDFMetadataInfo::*;
using AttributeField = std::optional<std::string> PDFDocumentAttributes::*;

struct TextEntry {
    const char* key;
    TextField field;
    AttributeField attribute;
};

struct DateEntry {
    const char* key;
    DateField field;
    AttributeField attribute;
};

constexpr std::array<TextEntry, 6> textEntries{{
    {"/Title", &PDFMetadataInfo::title, &PDFDocumentAttributes::title},
    {"/Author", &PDFMetadataInfo::author, &PDFDocumentAttributes::author},
    {"/Creator", &PDFMetadataInfo::creator, &PDFDocumentAttributes::creator},
    {"/Producer", &PDFMetadataInfo::producer, &PDFDocumentAttributes::producer},
    {"/Subject", &PDFMetadataInfo::subject, &PDFDocumentAttributes::subject},
    {"/Keywords", &PDFMetadataInfo::keywords, &PDFDocumentAttributes::keywords},
}};

constexpr std::array<DateEntry, 2> dateEntries{{
    {"/CreationDate", &PDFMetadataInfo::creationDate, &PDFDocumentAttributes::creationDate},
    {"/ModDate", &PDFMetadataInfo::modificationDate, &PDFDocumentAttributes::modificationDate},
}};

void fillAbsentFromAttributes(PDFMetadataInfo& info, const PDFDocumentAttributes& attributes) {
    for (const auto& entry : textEntries) {
        const auto& text = attributes.*entry.attribute;
        if (!(info.*entry.field) && text && !text->empty()) {
            info.*entry.field = *text;
        }
    }
    for (const auto& entry : dateEntries) {
        const auto& text = attributes.*entry.attribute;
        if (!(info.*entry.field) && text) {
            info.*entry.field = PDFDateParser::parse(*text);
        }
    }
}

} // namespace

std::optional<PDFDocument> PDFDocumentEngine::open(const std::filesystem::path& url,
                                                   const std::optional<std::string>& password) {
    if (!fileExists(url)) {
        return std::nullopt;
    }
    try {
        auto document = PDFDocument::open(url);
        if (!document.isLocked()) {
            return document;
        }
        if (document.unlock(password.value_or("")) && !document.isLocked()) {
            return document;
        }
    } catch (const std::exception&) {
        // Any failure to read the file answers absent.
    }
    return std::nullopt;
}

PDFDocument PDFDocumentEngine::openUnlock(const std::filesystem::path& url,
                                          const std::string& password) {
    if (!fileExists(url)) {
        throw PDFCoreError::fileNotFound(url);
    }
    auto document = openOrThrow(url);
    if (document.isLocked() && !tryUnlock(document, url, password)) {
        throw PDFCoreError::wrongPassword();
    }
    return document;
}

PDFDocument PDFDocumentEngine::openCG(const std::filesystem::path& url,
                                      const std::optional<std::string>& password) {
    auto document = openOrThrow(url);
    if (document.isEncrypted() && !tryUnlock(document, url, password.value_or("")) &&
        !tryUnlock(document, url, "")) {
        throw PDFCoreError::wrongPassword();
    }
    return document;
}

namespace {

const PDFDocumentEngine::ValidationResult cannotReopen{false,
                                                       "Could not re-open the generated PDF."};

// The first page of a page tree: the first kid, down to a leaf; absent for an empty or broken
// tree (a loop, or kids that are not dictionaries).
std::optional<QPDFObjectHandle> firstLeaf(QPDFObjectHandle node) {
    for (int depth = 0; depth < 64; ++depth) {
        if (!node.isDictionary()) {
            return std::nullopt;
        }
        auto kids = node.getKey("/Kids");
        if (!kids.isArray()) {
            return node;
        }
        if (kids.getArrayNItems() == 0) {
            return std::nullopt;
        }
        node = kids.getArrayItem(0);
    }
    return std::nullopt;
}

// A freshly written file is checked as a reader meets it, without walking every page: its
// cross-reference data must read without repair (a file cut short or overwritten needs repair),
// the page tree must count the pages expected, and its first page must have an area. Walking
// the whole tree again would cost a re-read of most of the file for what the writer, which built
// the tree, already guarantees.
// Warnings that a correct output may still raise when read back, because they describe what the
// input itself held and writing it again keeps it as it was:
// - "name with stray #": names written before PDF 1.2 allowed # escapes (/F#1). qpdf keeps them
//   byte for byte, as it must: page content that names the same resource cannot be rewritten
//   to match, and every reader takes the stray # literally in both places.
bool toleratedWarning(const QPDFExc& warning) {
    return warning.getMessageDetail().find("name with stray #") != std::string::npos;
}

PDFDocumentEngine::ValidationResult validated(QPDF& qpdf, std::optional<int> expectedPageCount) {
    auto pages = qpdf.getRoot().getKey("/Pages");
    // Warnings count up to here and again after the first page has been read.
    const auto clean = [&qpdf] {
        const auto warnings = qpdf.getWarnings();
        return std::all_of(warnings.begin(), warnings.end(), toleratedWarning);
    };
    if (!clean() || !pages.isDictionary()) {
        return cannotReopen;
    }
    auto count = pages.getKey("/Count");
    const int pageCount = count.isInteger() ? count.getIntValueAsInt() : 0;
    if (expectedPageCount && pageCount != *expectedPageCount) {
        return {false,
                fmt::format("Page count mismatch ({} vs {}).", pageCount, *expectedPageCount)};
    }
    if (pageCount > 0) {
        std::optional<PDFRect> box;
        try {
            if (const auto first = firstLeaf(pages)) {
                box = PDFPage(*first).mediaBox();
            }
        } catch (const std::exception&) {
            // A first page that cannot be fetched is let through; page presence is checked by
            // the engines themselves.
        }
        if (box && !(box->width > 0 && box->height > 0)) {
            return {false, "First page has invalid geometry."};
        }
    }
    if (!clean()) {
        return cannotReopen;
    }
    return {true, "OK"};
}

} // namespace

PDFDocumentEngine::ValidationResult
PDFDocumentEngine::validateOutput(const std::filesystem::path& url,
                                  std::optional<int> expectedPageCount) {
    if (!fileExists(url)) {
        return {false, "Output file missing."};
    }
    try {
        QPDF qpdf;
        qpdf.setSuppressWarnings(true);
        // An output that needs a user password fails here: none of ours is checked with one.
        qpdf.processFile(url.c_str(), "");
        return validated(qpdf, expectedPageCount);
    } catch (const std::exception&) {
        return cannotReopen;
    }
}

PDFDocumentEngine::ValidationResult
PDFDocumentEngine::validateOutput(std::string_view bytes, std::optional<int> expectedPageCount) {
    try {
        QPDF qpdf;
        qpdf.setSuppressWarnings(true);
        qpdf.processMemoryFile("output", bytes.data(), bytes.size(), "");
        return validated(qpdf, expectedPageCount);
    } catch (const std::exception&) {
        return cannotReopen;
    }
}

std::optional<std::string> PDFDocumentEngine::stringKey(QPDFObjectHandle dictionary,
                                                        const std::string& key) {
    auto value = dictionary.getKey(key);
    if (!value.isString()) {
        return std::nullopt;
    }
    auto text = value.getUTF8Value();
    if (text.empty()) {
        return std::nullopt;
    }
    return text;
}

PDFMetadataInfo PDFDocumentEngine::readMetadata(const std::filesystem::path& url) {
    PDFMetadataInfo info;
    std::optional<PDFDocument> document;
    try {
        document.emplace(openCG(url));
    } catch (const std::exception&) {
        return info;
    }
    // One reading serves both lookups: the page-level opening would read the same file with the
    // same (empty) password and so be locked or unlocked exactly when this one is.
    try {
        auto catalogInfo = document->qpdf().getRoot().getKey("/Info");
        if (catalogInfo.isDictionary()) {
            for (const auto& entry : textEntries) {
                info.*entry.field = stringKey(catalogInfo, entry.key);
            }
            for (const auto& entry : dateEntries) {
                if (auto text = stringKey(catalogInfo, entry.key)) {
                    info.*entry.field = PDFDateParser::parse(*text);
                }
            }
        }
    } catch (const std::exception&) {
        // A damaged catalog leaves the fields to the document attributes.
    }
    try {
        fillAbsentFromAttributes(info, document->attributes());
    } catch (const std::exception&) {
        // Nothing more to learn from a document whose Info dictionary cannot be read.
    }
    return info;
}

} // namespace quillet
