#include "cli/InfoReport.hpp"

#include "engines/Formatters.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace quillet {
namespace {

std::string truncated(double value) { return std::to_string(static_cast<long long>(value)); }

std::string topImages(std::vector<PDFImageInfo> images) {
    std::stable_sort(images.begin(), images.end(), [](const auto& left, const auto& right) {
        return left.effectiveDPI > right.effectiveDPI;
    });
    std::string line;
    for (std::size_t i = 0; i < std::min<std::size_t>(3, images.size()); ++i) {
        line += (i > 0 ? ", " : "") + truncated(images[i].effectiveDPI) + " DPI " +
                std::to_string(images[i].pixelWidth) + "×" + std::to_string(images[i].pixelHeight);
    }
    return line;
}

std::string fontList(const PDFAnalysis& analysis) {
    std::set<std::string> names;
    for (const auto& page : analysis.pages) {
        names.insert(page.fontNames.begin(), page.fontNames.end());
    }
    if (names.empty()) {
        return "none";
    }
    std::string line;
    for (const auto& name : names) {
        line += (line.empty() ? "" : ", ") + name;
    }
    return line;
}

} // namespace

std::string dominantSize(const PDFAnalysis& analysis) {
    if (analysis.pages.empty()) {
        return "";
    }
    const double width = analysis.pages.front().widthPoints;
    const double height = analysis.pages.front().heightPoints;
    const auto near = [](double value, double target) { return std::abs(value - target) < 3.0; };
    if (near(width, 595.28) && near(height, 841.89)) {
        return " (A4)";
    }
    if (near(width, 612) && near(height, 792)) {
        return " (US Letter)";
    }
    return fmt::format(" ({:.0f}×{:.0f} pt)", width, height);
}

std::string infoReport(const std::string& fileName, const PDFAnalysis& analysis) {
    const auto images = analysis.images();
    const double averageDPI = analysis.averageImageDPI();
    const auto& metadata = analysis.metadata;
    std::string report = "── " + fileName + " ──\n";
    report += "  size:         " + formattedBytes(analysis.fileSize, 2) + "\n";
    report += "  pdf version:  " + analysis.pdfVersion.value_or("?") + "\n";
    report += "  pages:        " + std::to_string(analysis.pageCount) + " " + dominantSize(analysis) + "\n";
    report += "  images:       " + std::to_string(images.size()) + " " +
              (images.empty() ? "" : "(avg " + truncated(averageDPI) + " DPI)") + "\n";
    if (!images.empty()) {
        report += "  top images:   " + topImages(images) + "\n";
    }
    report += "  fonts:        " + fontList(analysis) + "\n";
    report += "  scanned:      " + std::to_string(analysis.scannedPageCount()) + "/" +
              std::to_string(analysis.pageCount) + " pages · text coverage " +
              PercentFormat::string(analysis.textCoverage(), 0) + "\n";
    report += "  metadata:     author=" + metadata.author.value_or("-") +
              " creator=" + metadata.creator.value_or("-") + "\n";
    report += "  security:     attachments=" + std::to_string(analysis.attachmentCount) +
              " forms=" + std::to_string(analysis.formFieldCount) +
              " annotations=" + std::to_string(analysis.annotationCount) +
              " js=" + (analysis.javascriptDetected ? "yes" : "no") +
              " signatures=" + std::to_string(analysis.signatureCount) + "\n";
    if (analysis.fileSize > 1'000'000 && averageDPI > 180 && analysis.imageHeavyPageCount() > 0) {
        const auto estimate = static_cast<std::int64_t>(
            (1.0 - analysis.estimatedReductionFraction(CompressionQualityTier::balanced)) *
            static_cast<double>(analysis.fileSize));
        report += "  recommend:    Compress Balanced — " + formattedBytes(analysis.fileSize, 2) +
                  " → ~" + formattedBytes(estimate, 2) + "\n";
    }
    report += "\n";
    return report;
}

} // namespace quillet
