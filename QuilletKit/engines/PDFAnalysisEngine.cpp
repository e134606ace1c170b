#include "engines/PDFAnalysisEngine.hpp"

#include "engines/ContentScanner.hpp"
#include "engines/Formatters.hpp"
#include "engines/PDFCoreError.hpp"
#include "engines/PDFDocumentEngine.hpp"
#include "engines/PDFFileVersionReader.hpp"
#include "engines/SecurityScanner.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <exception>
#include <optional>
#include <thread>

namespace quillet {
namespace fs = std::filesystem;
namespace {

// Below this many pages a second reader of the file costs more than it saves.
constexpr int pagesPerExtraThread = 16;

using PageSlots = std::vector<std::optional<PDFPageAnalysis>>;

void analyzeRange(const PDFDocument& document, int first, int last, PageSlots& slots) {
    for (int index = first; index < last; ++index) {
        try {
            slots[static_cast<std::size_t>(index)] =
                PDFAnalysisEngine::analyzePage(document.page(index), index);
        } catch (const std::exception&) {
            // A page that cannot be fetched is left out.
        }
    }
}

// Each thread reads the file through its own document: a qpdf document is not thread-safe.
PageSlots analyzePages(const fs::path& url, const PDFDocument& document) {
    const int count = document.pageCount();
    PageSlots slots(static_cast<std::size_t>(count));
    const int threads = std::clamp(count / pagesPerExtraThread, 1,
                                   static_cast<int>(std::max(1u, std::thread::hardware_concurrency())));
    const int perThread = (count + threads - 1) / threads;
    std::vector<std::exception_ptr> failures(static_cast<std::size_t>(threads));
    {
        std::vector<std::jthread> workers;
        for (int t = 1; t < threads; ++t) {
            workers.emplace_back([&, t] {
                try {
                    const PDFDocument own = PDFDocumentEngine::openCG(url);
                    analyzeRange(own, t * perThread, std::min(count, (t + 1) * perThread), slots);
                } catch (...) {
                    failures[static_cast<std::size_t>(t)] = std::current_exception();
                }
            });
        }
        analyzeRange(document, 0, std::min(count, perThread), slots);
    }
    for (const auto& failure : failures) {
        if (failure) {
            std::rethrow_exception(failure);
        }
    }
    return slots;
}

void countAnnotations(const PDFDocument& document, PDFAnalysis& analysis) {
    for (int index = 0; index < document.pageCount(); ++index) {
        try {
            for (const auto& annotation : document.page(index).annotations()) {
                ++analysis.annotationCount;
                if (annotation.url) {
                    ++analysis.externalLinkCount;
                }
                if (annotation.type == "Signature") {
                    ++analysis.signatureCount;
                }
            }
        } catch (const std::exception&) {
            // Damaged annotations of one page do not hide the others.
        }
    }
}

} // namespace

PDFPageAnalysis PDFAnalysisEngine::analyzePage(const PDFPage& page, int index) {
    return ContentScanner::scanPage(page.object(), index);
}

PDFAnalysis PDFAnalysisEngine::analyze(const fs::path& url) {
    PDFAnalysis analysis;
    std::error_code error;
    const auto size = fs::file_size(url, error);
    if (error) {
        throw PDFCoreError::cannotOpen(url);
    }
    analysis.fileSize = static_cast<std::int64_t>(size);
    const PDFDocument document = PDFDocumentEngine::openCG(url);
    analysis.pageCount = document.pageCount();
    if (analysis.pageCount < 1) {
        throw PDFCoreError::emptyDocument();
    }
    for (auto& slot : analyzePages(url, document)) {
        if (slot) {
            analysis.pages.push_back(std::move(*slot));
        }
    }
    analysis.pdfVersion = PDFFileVersionReader::version(url);
    analysis.metadata = PDFDocumentEngine::readMetadata(url);
    SecurityScanner::Result security;
    try {
        security = SecurityScanner::scan(document.qpdf().getRoot());
    } catch (const std::exception&) {
        // No readable catalog: nothing attached, no form, no script.
    }
    analysis.attachmentCount = security.attachmentCount;
    analysis.formFieldCount = security.formFieldCount;
    analysis.javascriptDetected = security.javascriptDetected;
    countAnnotations(document, analysis);
    analysis.isEncrypted = document.isEncrypted();
    return analysis;
}

std::vector<RecommendedAction> PDFAnalysisEngine::recommendations(const PDFAnalysis& analysis) {
    std::vector<RecommendedAction> actions;
    if (analysis.isEncrypted) {
        actions.push_back({"unprotect", "Password protected", "Remove the password if you know it.",
                           PDFOperationKind::unprotect, false});
    }
    const double averageDPI = analysis.averageImageDPI();
    if (analysis.fileSize > 1'000'000 && averageDPI > 180 && analysis.imageHeavyPageCount() > 0) {
        const auto predicted = static_cast<std::int64_t>(
            (1.0 - analysis.estimatedReductionFraction(CompressionQualityTier::balanced)) *
            static_cast<double>(analysis.fileSize));
        actions.push_back({"compress", "Compress",
                           formattedBytes(analysis.fileSize, 2) + " → ~" +
                               formattedBytes(predicted, 2) + " · avg image " +
                               std::to_string(static_cast<long long>(averageDPI)) + " DPI",
                           PDFOperationKind::compress, false});
    }
    if (analysis.scannedPageCount() > 0 && analysis.textCoverage() < 0.3) {
        actions.push_back({"ocr", "Scanned document detected", "Make searchable (OCR)",
                           PDFOperationKind::ocr, false});
    }
    if (hasPersonalMetadata(analysis.metadata)) {
        actions.push_back({"clean", "Personal metadata found",
                           "Author, creator or dates are embedded. Clean before sharing.",
                           PDFOperationKind::clean, false});
    }
    if (analysis.attachmentCount > 0 || analysis.javascriptDetected) {
        actions.push_back({"security", "Embedded content detected",
                           std::to_string(analysis.attachmentCount) + " attachment(s)" +
                               (analysis.javascriptDetected ? ", JavaScript" : ""),
                           PDFOperationKind::clean, false});
    }
    return actions;
}

} // namespace quillet
