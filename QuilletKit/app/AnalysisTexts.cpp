#include "app/AnalysisTexts.hpp"

#include "app/Texts.hpp"

#include <QCoreApplication>
#include <QLocale>

#include <cmath>

namespace quillet::AnalysisTexts {
namespace {

struct NamedSize {
    const char* name;
    double width; // points, portrait
    double height;
    bool metric;
};

constexpr NamedSize namedSizes[] = {
    {"A3", 841.89, 1190.55, true}, {"A4", 595.28, 841.89, true}, {"A5", 419.53, 595.28, true},
    {"Letter", 612, 792, false},   {"Legal", 612, 1008, false},  {"Tabloid", 792, 1224, false},
};

QString number(double value, int decimals) {
    return QLocale().toString(value, 'f', decimals);
}

} // namespace

QString pageSize(double widthPoints, double heightPoints) {
    const double shortSide = std::min(widthPoints, heightPoints);
    const double longSide = std::max(widthPoints, heightPoints);
    for (const NamedSize& size : namedSizes) {
        if (std::abs(shortSide - size.width) <= 2 && std::abs(longSide - size.height) <= 2) {
            const QString dimensions =
                size.metric ? QStringLiteral("%1 × %2 mm")
                                  .arg(number(std::round(widthPoints / 72 * 25.4), 0),
                                       number(std::round(heightPoints / 72 * 25.4), 0))
                            : QStringLiteral("%1 × %2 in")
                                  .arg(number(widthPoints / 72, widthPoints == 612 ? 1 : 0),
                                       number(heightPoints / 72, heightPoints == 612 ? 1 : 0));
            return QStringLiteral("%1 (%2)").arg(dimensions, QString::fromLatin1(size.name));
        }
    }
    return QStringLiteral("%1 × %2 pt")
        .arg(number(std::round(widthPoints), 0), number(std::round(heightPoints), 0));
}

QStringList personalFields(const PDFMetadataInfo& metadata) {
    QStringList fields;
    const auto has = [](const std::optional<std::string>& text) { return text && !text->empty(); };
    if (has(metadata.author)) {
        fields << QCoreApplication::translate("AnalysisTexts", "Author");
    }
    if (has(metadata.creator)) {
        fields << QCoreApplication::translate("AnalysisTexts", "Creator");
    }
    if (has(metadata.producer)) {
        fields << QCoreApplication::translate("AnalysisTexts", "Producer");
    }
    if (has(metadata.keywords)) {
        fields << QCoreApplication::translate("AnalysisTexts", "Keywords");
    }
    return fields;
}

QString embeddedContent(const PDFAnalysis& analysis) {
    QStringList parts;
    if (analysis.attachmentCount > 0) {
        parts << QCoreApplication::translate("AnalysisTexts", "%n attachment(s)", nullptr,
                                             analysis.attachmentCount);
    }
    if (analysis.formFieldCount > 0) {
        parts << QCoreApplication::translate("AnalysisTexts", "%n form field(s)", nullptr,
                                             analysis.formFieldCount);
    }
    if (analysis.javascriptDetected) {
        parts << QCoreApplication::translate("AnalysisTexts", "JavaScript");
    }
    if (analysis.externalLinkCount > 0) {
        parts << QCoreApplication::translate("AnalysisTexts", "%n link(s)", nullptr,
                                             analysis.externalLinkCount);
    }
    if (analysis.signatureCount > 0) {
        parts << QCoreApplication::translate("AnalysisTexts", "%n signature(s)", nullptr,
                                             analysis.signatureCount);
    }
    return parts.join(QStringLiteral(" · "));
}

std::int64_t predictedBytes(const PDFAnalysis& analysis, CompressionQualityTier tier) {
    return static_cast<std::int64_t>(
        std::llround((1.0 - analysis.estimatedReductionFraction(tier)) *
                     static_cast<double>(analysis.fileSize)));
}

Recommendation recommendation(const RecommendedAction& action, const PDFAnalysis& analysis) {
    const std::string& id = action.id;
    if (id == "unprotect") {
        return {
            QCoreApplication::translate("AnalysisTexts", "Password protected"),
            QCoreApplication::translate("AnalysisTexts", "Remove the password if you know it.")};
    }
    if (id == "compress") {
        return {
            QCoreApplication::translate("AnalysisTexts", "Compress"),
            QCoreApplication::translate("AnalysisTexts", "%1 → ~%2 · images at %3 DPI on average")
                .arg(Texts::bytes(analysis.fileSize),
                     Texts::bytes(predictedBytes(analysis, CompressionQualityTier::balanced)))
                .arg(std::lround(analysis.averageImageDPI()))};
    }
    if (id == "ocr") {
        return {
            QCoreApplication::translate("AnalysisTexts", "Scanned document detected"),
            QCoreApplication::translate("AnalysisTexts", "Make searchable (OCR)")};
    }
    if (id == "clean") {
        return {
            QCoreApplication::translate("AnalysisTexts", "Personal metadata found"),
            QCoreApplication::translate(
                "AnalysisTexts", "Author, creator or dates are embedded. Clean before sharing.")};
    }
    if (id == "security") {
        return {QCoreApplication::translate("AnalysisTexts", "Embedded content detected"),
                embeddedContent(analysis)};
    }
    return {QString::fromStdString(action.title), QString::fromStdString(action.detail)};
}

std::optional<Destination> destination(const RecommendedAction& action) {
    using Section = AppModel::Section;
    if (action.isComingSoon) {
        return std::nullopt;
    }
    switch (action.operation) {
    case PDFOperationKind::compress:
        return Destination{Section::compress,
                           OperationParameters::Compress{CompressionQualityTier::balanced}};
    case PDFOperationKind::unprotect:
        return Destination{Section::privacy, OperationParameters::Unprotect{}};
    case PDFOperationKind::ocr:
        return Destination{Section::privacy, OperationParameters::OCR{}};
    case PDFOperationKind::clean:
        // Attachments and scripts go only with the preset that keeps nothing but what is seen.
        return Destination{Section::privacy,
                           OperationParameters::Clean{action.id == "security"
                                                          ? CleanPreset::flattenAndClean
                                                          : CleanPreset::privacy}};
    default: return std::nullopt;
    }
}

} // namespace quillet::AnalysisTexts
