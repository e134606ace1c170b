#include "engines/PDFOrganizeEngine.hpp"

#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"

#include <qpdf/QPDFAcroFormDocumentHelper.hh>

#include <fmt/format.h>

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>

namespace quillet {
namespace fs = std::filesystem;
namespace {

// Copies pages of one source into one target. The form helpers index every field of their
// document when made, so a job keeps one pair for all its pages instead of one per page.
class PageCopier {
  public:
    PageCopier(PDFDocument& target, PDFDocument& source) : target_(target), source_(source) {
        if (!source.qpdf().getRoot().getKey("/AcroForm").isDictionary()) {
            return;
        }
        try {
            targetForms_.emplace(target.qpdf());
            if (&source != &target) {
                sourceForms_.emplace(source.qpdf());
            }
        } catch (const std::exception&) {
            // A form too damaged to index: widgets are copied as they are, fields stay behind.
            targetForms_.reset();
        }
    }

    PDFPage copy(int sourceIndex, int index) {
        target_.insertPageCopy(source_, sourceIndex, index);
        PDFPage copy = target_.page(index);
        if (targetForms_) {
            try {
                // Gives the copy annotations of its own (a shallow duplicate would share its
                // widgets with the original) and registers their fields in the target's form.
                targetForms_->fixCopiedAnnotations(copy.object(),
                                                   source_.page(sourceIndex).object(),
                                                   sourceForms_ ? *sourceForms_ : *targetForms_);
            } catch (const std::exception&) {
                // The widgets stay as copied: visible, no longer fillable.
            }
        }
        return copy;
    }

  private:
    PDFDocument& target_;
    PDFDocument& source_;
    std::optional<QPDFAcroFormDocumentHelper> targetForms_;
    std::optional<QPDFAcroFormDocumentHelper> sourceForms_;
};

// Degrees to add per source page, each sum kept within 0..359. Refuses a turn a page cannot take
// before anything is read, so a bad job costs nothing.
std::map<std::int64_t, int> rotationMap(const OperationParameters::Organize& parameters) {
    std::map<std::int64_t, int> turns;
    const auto pairs = std::min(parameters.rotatePages.size(), parameters.rotations.size());
    for (std::size_t i = 0; i < pairs; ++i) {
        const std::int64_t degrees = parameters.rotations[i];
        if (degrees % 90 != 0) {
            throw PDFCoreError::invalidInput(
                fmt::format("Rotation by {} degrees is not a multiple of 90.", degrees));
        }
        // Reduced before adding: a sum of raw values near the 64-bit limit would overflow.
        auto& sum = turns[parameters.rotatePages[i]];
        sum = static_cast<int>((sum + degrees % 360 + 360) % 360);
    }
    return turns;
}

// The turn is added to the source page's rotation, not the copy's: a page kept twice is copied
// the second time from the first copy, which may already have been turned.
void applyTurn(PDFPage& copy, const PDFDocument& source, int index, int degrees,
               const fs::path& output) {
    try {
        copy.setRotation(source.page(index).rotation() + degrees);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(output.filename().string());
    }
}

} // namespace

std::vector<std::int64_t> PDFOrganizeEngine::keptOrder(int pageCount,
                                                       const OperationParameters::Organize& p) {
    std::vector<std::int64_t> order;
    if (p.newOrder) {
        order = *p.newOrder;
    } else {
        for (int index = 0; index < pageCount; ++index) {
            order.push_back(index);
        }
    }
    const std::set<std::int64_t> deleted(p.deletePages.begin(), p.deletePages.end());
    std::erase_if(order, [&](std::int64_t index) { return deleted.contains(index); });
    return order;
}

void PDFOrganizeEngine::organize(const fs::path& input, const fs::path& output,
                                 const OperationParameters::Organize& parameters,
                                 const std::function<void(double)>& progress,
                                 const std::function<bool()>& isCancelled) {
    const auto turns = rotationMap(parameters);
    PDFDocument source = PDFDocumentEngine::openUnlock(input, "");
    const int pageCount = source.pageCount();
    const auto order = keptOrder(pageCount, parameters);

    PDFDocument result = PDFDocument::empty();
    try {
        // What a reader shows as the document's title should survive a reordering of its pages.
        result.setAttributes(source.attributes());
    } catch (const std::exception&) {
        // Unreadable information fields are left out rather than failing the pages.
    }
    std::optional<PageCopier> copier;
    try {
        copier.emplace(result, source);
    } catch (const std::exception&) {
        throw PDFCoreError::cannotOpen(input);
    }
    int copied = 0;
    for (std::size_t k = 0; k < order.size(); ++k) {
        if (isCancelled && isCancelled()) {
            throw CancellationError();
        }
        const std::int64_t index = order[k];
        if (index >= 0 && index < pageCount) {
            std::optional<PDFPage> page;
            try {
                page = copier->copy(static_cast<int>(index), copied);
                ++copied;
            } catch (const std::exception&) {
                // A page that cannot be read is left out, as a missing one is.
            }
            if (auto turn = turns.find(index); page && turn != turns.end() && turn->second != 0) {
                applyTurn(*page, source, static_cast<int>(index), turn->second, output);
            }
        }
        if (progress) {
            progress(static_cast<double>(k + 1) / static_cast<double>(order.size()));
        }
    }
    if (copied == 0) {
        throw PDFCoreError::emptyDocument();
    }
    try {
        result.write(output);
    } catch (const std::exception&) {
        throw PDFCoreError::writeFailed(output.filename().string());
    }
}

PDFPage PDFOrganizeEngine::copyPage(PDFDocument& target, PDFDocument& source, int sourceIndex,
                                    int index) {
    return PageCopier(target, source).copy(sourceIndex, index);
}

} // namespace quillet
