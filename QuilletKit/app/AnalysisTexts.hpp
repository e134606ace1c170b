// How the screens put an analysis into words, in the language loaded at start, and where each
// recommendation leads.
#pragma once

#include "app/AppModel.hpp"
#include "engines/PDFAnalysis.hpp"

#include <QString>
#include <QStringList>

#include <optional>

namespace quillet::AnalysisTexts {

/// "210 × 297 mm (A4)", "8.5 × 11 in (Letter)", or the size in points for other sizes; the
/// name also for the landscape form.
QString pageSize(double widthPoints, double heightPoints);

/// The names of the personal fields that hold text (Author, Creator, Producer, Keywords).
QStringList personalFields(const PDFMetadataInfo& metadata);

/// "2 attachments · 1 form field · JavaScript · 4 links · 1 signature", only what is there;
/// empty when there is nothing.
QString embeddedContent(const PDFAnalysis& analysis);

/// What compressing at `tier` is predicted to leave of the file, in bytes.
std::int64_t predictedBytes(const PDFAnalysis& analysis, CompressionQualityTier tier);

struct Recommendation {
    QString title;
    QString detail;
};
/// The recommendation's title and detail, translated (the engine's English otherwise).
Recommendation recommendation(const RecommendedAction& action, const PDFAnalysis& analysis);

/// Where following a recommendation leads: the section and the options it preselects. None for
/// one that is not actionable (coming soon).
struct Destination {
    AppModel::Section section;
    OperationParameters suggested;
};
std::optional<Destination> destination(const RecommendedAction& action);

} // namespace quillet::AnalysisTexts
