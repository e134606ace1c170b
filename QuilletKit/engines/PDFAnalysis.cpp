#include "engines/PDFAnalysis.hpp"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace quillet {

double PDFPageAnalysis::imageCoverage() const {
    double placed = 0;
    for (const auto& image : images) {
        const double d = std::max(1.0, image.effectiveDPI);
        placed += (image.pixelWidth / d * 72.0) * (image.pixelHeight / d * 72.0);
    }
    const double area = widthPoints * heightPoints;
    return area > 1.0 ? placed / area : placed;
}

bool PDFPageAnalysis::isImageHeavy() const {
    if (images.empty()) {
        return false;
    }
    return !hasText || (imageCoverage() > 0.6 && textOperatorCount < 400);
}

std::vector<PDFImageInfo> PDFAnalysis::images() const {
    std::vector<PDFImageInfo> all;
    for (const auto& page : pages) {
        all.insert(all.end(), page.images.begin(), page.images.end());
    }
    return all;
}

double PDFAnalysis::averageImageDPI() const {
    double sum = 0;
    std::size_t count = 0;
    for (const auto& page : pages) {
        for (const auto& image : page.images) {
            sum += image.effectiveDPI;
            ++count;
        }
    }
    return count == 0 ? 0.0 : sum / static_cast<double>(count);
}

int PDFAnalysis::scannedPageCount() const {
    return static_cast<int>(std::count_if(pages.begin(), pages.end(), [](const auto& page) {
        return !page.hasText && !page.images.empty();
    }));
}

double PDFAnalysis::textCoverage() const {
    if (pages.empty()) {
        return 0.0;
    }
    const auto withText =
        std::count_if(pages.begin(), pages.end(), [](const auto& page) { return page.hasText; });
    return static_cast<double>(withText) / static_cast<double>(pages.size());
}

int PDFAnalysis::imageHeavyPageCount() const {
    return static_cast<int>(std::count_if(pages.begin(), pages.end(),
                                          [](const auto& page) { return page.isImageHeavy(); }));
}

double PDFAnalysis::estimatedReductionFraction(CompressionQualityTier tier) const {
    std::int64_t imageBytes = 0;
    for (const auto& page : pages) {
        for (const auto& image : page.images) {
            imageBytes += image.estimatedBytes;
        }
    }
    if (imageBytes <= 0 || fileSize <= 0) {
        return tier == CompressionQualityTier::lossless ? 0.05 : 0.0;
    }
    static constexpr double targetDPI[] = {300, 200, 120, 0};
    static constexpr double factor[] = {0.9025, 0.818, 0.7075, 0.35};
    const auto t = static_cast<std::size_t>(tier);
    const double average = std::max(72.0, averageImageDPI());
    const double ratio = targetDPI[t] / average;
    const double scale = std::min(1.0, ratio * ratio);
    const double size = static_cast<double>(fileSize);
    const double predicted =
        std::max(factor[t] * scale * static_cast<double>(imageBytes) +
                     (size - static_cast<double>(imageBytes)),
                 size * 0.02);
    return std::max(0.0, 1.0 - predicted / size);
}

bool hasPersonalMetadata(const PDFMetadataInfo& metadata) {
    const auto filled = [](const std::optional<std::string>& text) {
        return text && !text->empty();
    };
    return filled(metadata.author) || filled(metadata.creator) || filled(metadata.producer) ||
           filled(metadata.keywords);
}

namespace {

nlohmann::ordered_json imageJSON(const PDFImageInfo& image) {
    return {{"id", image.id},
            {"pageIndex", image.pageIndex},
            {"pixelWidth", image.pixelWidth},
            {"pixelHeight", image.pixelHeight},
            {"effectiveDPI", image.effectiveDPI},
            {"isJPEG", image.isJPEG},
            {"isMonochrome", image.isMonochrome},
            {"estimatedBytes", image.estimatedBytes}};
}

nlohmann::ordered_json pageJSON(const PDFPageAnalysis& page) {
    auto images = nlohmann::ordered_json::array();
    for (const auto& image : page.images) {
        images.push_back(imageJSON(image));
    }
    return {{"index", page.index},
            {"hasText", page.hasText},
            {"textOperatorCount", page.textOperatorCount},
            {"widthPoints", page.widthPoints},
            {"heightPoints", page.heightPoints},
            {"fontNames", page.fontNames},
            {"imageCoverage", page.imageCoverage()},
            {"isImageHeavy", page.isImageHeavy()},
            {"images", std::move(images)}};
}

} // namespace

nlohmann::ordered_json toJSON(const PDFAnalysis& analysis,
                              const std::vector<RecommendedAction>& recommendations) {
    auto pages = nlohmann::ordered_json::array();
    for (const auto& page : analysis.pages) {
        pages.push_back(pageJSON(page));
    }
    auto reductions = nlohmann::ordered_json::object();
    for (const auto tier : allCases<CompressionQualityTier>()) {
        reductions[std::string(rawValue(tier))] = analysis.estimatedReductionFraction(tier);
    }
    auto actions = nlohmann::ordered_json::array();
    for (const auto& action : recommendations) {
        actions.push_back({{"id", action.id},
                           {"title", action.title},
                           {"detail", action.detail},
                           {"operation", rawValue(action.operation)},
                           {"isComingSoon", action.isComingSoon}});
    }
    return {{"fileSize", analysis.fileSize},
            {"pdfVersion", analysis.pdfVersion ? nlohmann::ordered_json(*analysis.pdfVersion)
                                               : nlohmann::ordered_json(nullptr)},
            {"pageCount", analysis.pageCount},
            {"isEncrypted", analysis.isEncrypted},
            {"metadata", toJSON(analysis.metadata)},
            {"hasPersonalMetadata", hasPersonalMetadata(analysis.metadata)},
            {"attachmentCount", analysis.attachmentCount},
            {"formFieldCount", analysis.formFieldCount},
            {"annotationCount", analysis.annotationCount},
            {"javascriptDetected", analysis.javascriptDetected},
            {"externalLinkCount", analysis.externalLinkCount},
            {"signatureCount", analysis.signatureCount},
            {"imageCount", analysis.images().size()},
            {"averageImageDPI", analysis.averageImageDPI()},
            {"scannedPageCount", analysis.scannedPageCount()},
            {"textCoverage", analysis.textCoverage()},
            {"imageHeavyPageCount", analysis.imageHeavyPageCount()},
            {"estimatedReductionFraction", std::move(reductions)},
            {"recommendations", std::move(actions)},
            {"pages", std::move(pages)}};
}

} // namespace quillet
