#include "app/ServicesRouter.hpp"

namespace quillet::ServicesRouter {

const QStringList& words() {
    static const QStringList all{QStringLiteral("compress"), QStringLiteral("merge"),
                                 QStringLiteral("convert"), QStringLiteral("clean"),
                                 QStringLiteral("images"),  QStringLiteral("ocr"),
                                 QStringLiteral("pagenumbers")};
    return all;
}

std::optional<Plan> plan(const std::optional<QString>& userData) {
    if (!userData) {
        return std::nullopt;
    }
    const QString& word = *userData;
    if (word == QLatin1String("compress")) {
        return Plan{PDFOperationKind::compress,
                    OperationParameters::Compress{CompressionQualityTier::balanced}};
    }
    if (word == QLatin1String("merge")) {
        return Plan{PDFOperationKind::merge, OperationParameters::Merge{false}};
    }
    if (word == QLatin1String("convert")) {
        return Plan{PDFOperationKind::pdfToImages,
                    OperationParameters::PDFToImages{"png", 150, "", 0.85}};
    }
    if (word == QLatin1String("clean")) {
        return Plan{PDFOperationKind::clean, OperationParameters::Clean{CleanPreset::privacy}};
    }
    if (word == QLatin1String("ocr")) {
        return Plan{PDFOperationKind::ocr, OperationParameters::OCR{"eng"}};
    }
    if (word == QLatin1String("pagenumbers")) {
        // A mark's defaults are a page number "{n}" at the bottom center.
        return Plan{PDFOperationKind::stamp,
                    OperationParameters::Stamp{{OperationParameters::StampMark{}}}};
    }
    if (word == QLatin1String("images")) {
        return Plan{PDFOperationKind::imagesToPDF,
                    OperationParameters::ImagesToPDF{"original", "fit", 0}};
    }
    return std::nullopt;
}

QList<QUrl> fileURLs(const QStringList& payload) {
    QList<QUrl> urls;
    for (const QString& item : payload) {
        const QUrl url(item);
        if (url.isValid() && url.scheme() == QLatin1String("file") && !url.path().isEmpty()) {
            urls << url;
        }
    }
    if (!urls.isEmpty()) {
        return urls;
    }
    for (const QString& item : payload) {
        // A line of text that happens to start with "/" but spans lines is no file name.
        if (!item.startsWith(QLatin1Char('/')) || item.contains(QLatin1Char('\n'))) {
            return {};
        }
        urls << QUrl::fromLocalFile(item);
    }
    return urls;
}

} // namespace quillet::ServicesRouter
