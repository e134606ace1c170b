#include "platform/PDFDocument.hpp"

#include "platform/PDFPageTreeRepair.hpp"
#include "platform/QPDFErrorTranslation.hpp"
#include "platform/StreamData.hpp"

#include <qpdf/QPDFExc.hh>
#include <qpdf/QPDFSystemError.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include <fmt/format.h>

#include <algorithm>
#include <cstring>

namespace quillet {

using detail::flattenLoopingPageTree;
using detail::rebuildPageTreeIfEmpty;
using detail::repairDegenerateMediaBoxes;
using detail::translatingQPDFErrors;
using Kind = PDFDocumentError::Kind;

PDFDocument::PDFDocument(PDFDocument&&) noexcept = default;
PDFDocument& PDFDocument::operator=(PDFDocument&&) noexcept = default;
PDFDocument::~PDFDocument() = default;

PDFDocument PDFDocument::open(const std::filesystem::path& path) {
    PDFDocument document;
    document.path_ = path;
    document.description_ = path.string();
    document.storage_ = std::make_shared<Storage>();
    document.locked_ = !document.load("");
    return document;
}

PDFDocument PDFDocument::open(std::string bytes, const std::string& description) {
    PDFDocument document;
    document.description_ = description;
    document.storage_ = std::make_shared<Storage>();
    document.storage_->memory = std::make_shared<const std::string>(std::move(bytes));
    document.locked_ = !document.load("");
    return document;
}

PDFDocument PDFDocument::empty() {
    PDFDocument document;
    document.description_ = "empty PDF";
    document.storage_ = std::make_shared<Storage>();
    document.storage_->qpdf = QPDF::create();
    document.storage_->qpdf->emptyPDF();
    return document;
}

// Reads the source with `password`; false when qpdf rejects the password. Pages are listed here,
// while errors still mean "cannot open", because qpdf parses lazily and would otherwise fail
// later, at the first page access.
bool PDFDocument::load(const std::string& password) {
    auto qpdf = QPDF::create();
    qpdf->setSuppressWarnings(true);
    try {
        if (storage_->memory) {
            const auto& bytes = *storage_->memory;
            qpdf->processMemoryFile(description_.c_str(), bytes.data(), bytes.size(),
                                    password.c_str());
        } else {
            qpdf->processFile(path_.c_str(), password.c_str());
        }
        qpdf->getRoot();
        flattenLoopingPageTree(*qpdf);
        rebuildPageTreeIfEmpty(*qpdf);
        // A page without a usable box is shown on US Letter by viewers; it is given that box
        // here, so that what we write reads back as a page.
        repairDegenerateMediaBoxes(*qpdf);
        // Refused here rather than when writing or rendering: qpdf's writer and the renderer
        // decode stacked filters in full, with no ceiling of their own.
        const bool suspect = storage_->memory ? mayStackFilters(std::string_view(*storage_->memory))
                                              : mayStackFilters(path_);
        if (suspect && !stackedStreamsWithin(*qpdf)) {
            throw PDFDocumentError(
                Kind::refused,
                fmt::format("{} is not processed: its streams expand to more than {} MB when "
                            "decoded.",
                            path_.empty() ? description_ : path_.filename().string(),
                            limits::stackedFilterBytes >> 20));
        }
    } catch (const PDFDocumentError&) {
        throw;
    } catch (const QPDFExc& error) {
        if (error.getErrorCode() == qpdf_e_password) {
            return false;
        }
        throw PDFDocumentError(Kind::cannotOpen, error.what(), error.getMessageDetail());
    } catch (const QPDFSystemError& error) {
        // Its message holds the whole path; the reason alone is the system's words.
        throw PDFDocumentError(Kind::cannotOpen, error.what(), std::strerror(error.getErrno()));
    } catch (const std::exception& error) {
        throw PDFDocumentError(Kind::cannotOpen, error.what());
    }
    storage_->qpdf = std::move(qpdf);
    password_ = password;
    return true;
}

bool PDFDocument::isEncrypted() const {
    return locked_ || storage_->qpdf->isEncrypted();
}

bool PDFDocument::unlock(const std::string& password) {
    if (!locked_) {
        return true;
    }
    locked_ = !load(password);
    return !locked_;
}

void PDFDocument::requireUnlocked() const {
    if (locked_) {
        throw PDFDocumentError(Kind::locked, description_ + ": the document is locked");
    }
}

QPDF& PDFDocument::qpdf() const {
    requireUnlocked();
    return *storage_->qpdf;
}

int PDFDocument::pageCount() const {
    if (locked_) {
        return 0;
    }
    return translatingQPDFErrors(Kind::damaged, [&] {
        // qpdf keeps its page list; a helper per page on every call made page(i) cost O(n).
        return static_cast<int>(storage_->qpdf->getAllPages().size());
    });
}

PDFPage PDFDocument::page(int index) const {
    if (index < 0 || index >= pageCount()) {
        throw std::out_of_range("page index " + std::to_string(index) + " outside 0.." +
                                std::to_string(pageCount() - 1));
    }
    return PDFPage(storage_->qpdf->getAllPages().at(static_cast<std::size_t>(index)));
}

void PDFDocument::insertPageCopy(PDFDocument& source, int sourceIndex, int index) {
    requireUnlocked();
    source.requireUnlocked();
    if (index < 0 || index > pageCount()) {
        throw std::out_of_range("insertion index " + std::to_string(index) + " outside 0.." +
                                std::to_string(pageCount()));
    }
    auto original = source.page(sourceIndex).object();
    translatingQPDFErrors(Kind::damaged, [&] {
        QPDFPageDocumentHelper pages(*storage_->qpdf);
        // A page object can appear only once in a page tree, so a page of this very document is
        // duplicated as a new page object sharing its content and resources.
        QPDFPageObjectHelper copy = &source == this
                                        ? QPDFPageObjectHelper(original).shallowCopyPage()
                                        : QPDFPageObjectHelper(original);
        const auto& all = pages.getAllPages();
        if (index == static_cast<int>(all.size())) {
            pages.addPage(copy, false);
        } else {
            pages.addPageAt(copy, true, all.at(static_cast<std::size_t>(index)));
        }
    });
    if (&source != this && std::find(storage_->borrowed.begin(), storage_->borrowed.end(),
                                     source.storage_) == storage_->borrowed.end()) {
        storage_->borrowed.push_back(source.storage_);
    }
}

void PDFDocument::removePage(int index) {
    auto doomed = page(index).object();
    translatingQPDFErrors(Kind::damaged, [&] {
        QPDFPageDocumentHelper(*storage_->qpdf).removePage(QPDFPageObjectHelper(doomed));
    });
}

} // namespace quillet
