#include "engines/PDFAnalysis.hpp"

#include "model/JSONObjectReader.hpp"

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

int requireInt(const JSONObjectReader& reader, std::string_view key) {
    return static_cast<int>(reader.require<std::int64_t>(key));
}

const nlohmann::ordered_json& requireArray(const nlohmann::ordered_json& object,
                                           const char* key) {
    const auto found = object.find(key);
    if (found == object.end() || !found->is_array()) {
        static const nlohmann::ordered_json missing;
        json_detail::throwMismatch(key, "an array", found == object.end() ? missing : *found);
    }
    return *found;
}

PDFImageInfo imageFromJSON(const nlohmann::ordered_json& json) {
    const JSONObjectReader reader(json);
    PDFImageInfo image;
    image.id = reader.value<std::string>("id", "");
    image.pageIndex = requireInt(reader, "pageIndex");
    image.pixelWidth = requireInt(reader, "pixelWidth");
    image.pixelHeight = requireInt(reader, "pixelHeight");
    image.effectiveDPI = reader.require<double>("effectiveDPI");
    image.isJPEG = reader.require<bool>("isJPEG");
    image.isMonochrome = reader.require<bool>("isMonochrome");
    image.estimatedBytes = reader.require<std::int64_t>("estimatedBytes");
    return image;
}

PDFPageAnalysis pageFromJSON(const nlohmann::ordered_json& json) {
    const JSONObjectReader reader(json);
    PDFPageAnalysis page;
    page.index = requireInt(reader, "index");
    page.hasText = reader.require<bool>("hasText");
    page.textOperatorCount = requireInt(reader, "textOperatorCount");
    page.widthPoints = reader.require<double>("widthPoints");
    page.heightPoints = reader.require<double>("heightPoints");
    for (const auto& name : requireArray(json, "fontNames")) {
        page.fontNames.push_back(json_detail::decodeString(name, "fontNames"));
    }
    for (const auto& image : requireArray(json, "images")) {
        page.images.push_back(imageFromJSON(image));
    }
    return page;
}

} // namespace

PDFAnalysis PDFAnalysis::fromJSON(const nlohmann::ordered_json& json) {
    const JSONObjectReader reader(json);
    PDFAnalysis analysis;
    analysis.fileSize = reader.require<std::int64_t>("fileSize");
    analysis.pdfVersion = reader.ifPresent<std::string>("pdfVersion");
    analysis.pageCount = requireInt(reader, "pageCount");
    analysis.isEncrypted = reader.require<bool>("isEncrypted");
    if (const auto metadata = json.find("metadata"); metadata != json.end()) {
        analysis.metadata = PDFMetadataInfo::fromJSON(*metadata);
    }
    analysis.attachmentCount = requireInt(reader, "attachmentCount");
    analysis.formFieldCount = requireInt(reader, "formFieldCount");
    analysis.annotationCount = requireInt(reader, "annotationCount");
    analysis.javascriptDetected = reader.require<bool>("javascriptDetected");
    analysis.externalLinkCount = requireInt(reader, "externalLinkCount");
    analysis.signatureCount = requireInt(reader, "signatureCount");
    for (const auto& page : requireArray(json, "pages")) {
        analysis.pages.push_back(pageFromJSON(page));
    }
    return analysis;
}

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
