#include "screens/InspectorSheet.hpp"

#include "app/AnalysisTexts.hpp"
#include "app/Texts.hpp"

#include <QDateTime>
#include <QDialogButtonBox>
#include <QFileInfo>
#include <QLocale>
#include <QTabWidget>
#include <QTextBrowser>
#include <QVBoxLayout>

#include <chrono>
#include <cmath>
#include <map>

namespace quillet {
namespace {

QString cell(const QString& text) {
    return QStringLiteral("<td style='padding: 2px 14px 2px 0'>%1</td>").arg(text.toHtmlEscaped());
}

/// An HTML table: a header row, then the rows.
QString table(const QStringList& header, const QList<QStringList>& rows) {
    QString html = QStringLiteral("<table cellspacing='0'><tr>");
    for (const QString& title : header) {
        html += QStringLiteral("<th align='left' style='padding: 2px 14px 4px 0'>%1</th>")
                    .arg(title.toHtmlEscaped());
    }
    html += QStringLiteral("</tr>");
    for (const QStringList& row : rows) {
        html += QStringLiteral("<tr>");
        for (const QString& value : row) {
            html += cell(value);
        }
        html += QStringLiteral("</tr>");
    }
    return html + QStringLiteral("</table>");
}

/// Two columns of names and values, without a header.
QString facts(const QList<std::pair<QString, QString>>& rows) {
    QString html = QStringLiteral("<table cellspacing='0'>");
    for (const auto& [name, value] : rows) {
        html += QStringLiteral("<tr><td style='padding: 2px 18px 2px 0'><b>%1</b></td>%2</tr>")
                    .arg(name.toHtmlEscaped(), cell(value));
    }
    return html + QStringLiteral("</table>");
}

QString text(const std::optional<std::string>& value) {
    return value ? QString::fromStdString(*value) : QString(QStringLiteral("—"));
}

QString date(const std::optional<std::chrono::system_clock::time_point>& value) {
    if (!value) {
        return QStringLiteral("—");
    }
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(value->time_since_epoch()).count();
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::LongFormat);
}

QString yesNo(bool value) {
    return value ? InspectorSheet::tr("yes") : InspectorSheet::tr("no");
}

} // namespace

InspectorSheet::InspectorSheet(const QString& path, const PDFAnalysis& analysis, QWidget* parent)
    : QDialog(parent), path_(path), analysis_(analysis), tabs_(new QTabWidget(this)) {
    setWindowTitle(tr("Inspect %1").arg(QFileInfo(path).fileName()));
    resize(760, 560);
    const std::pair<QString, QString> pagesOfText[] = {
        {tr("Overview"), overview()},       {tr("Pages"), pages()},
        {tr("Images"), images()},           {tr("Fonts"), fonts()},
        {tr("Metadata"), metadata()},       {tr("Security"), security()},
        {tr("Compression"), compression()},
    };
    for (const auto& [title, html] : pagesOfText) {
        auto* browser = new QTextBrowser(tabs_);
        browser->setHtml(html);
        browser->setOpenLinks(false);
        browser->setAccessibleName(title);
        tabs_->addTab(browser, title);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs_, 1);
    layout->addWidget(buttons);
}

QString InspectorSheet::overview() const {
    const PDFAnalysis& a = analysis_;
    QList<std::pair<QString, QString>> rows{
        {tr("File"), path_},
        {tr("Size"), Texts::bytes(a.fileSize)},
        {tr("Pages"), QLocale().toString(a.pageCount)},
        {tr("PDF version"), text(a.pdfVersion)},
        {tr("Encrypted"), yesNo(a.isEncrypted)},
        {tr("Images"), QLocale().toString(static_cast<int>(a.images().size()))},
        {tr("Average image DPI"), QLocale().toString(std::lround(a.averageImageDPI()))},
        {tr("Scanned pages"), QLocale().toString(a.scannedPageCount())},
        {tr("Pages with text"), QStringLiteral("%1%").arg(std::lround(a.textCoverage() * 100))},
    };
    if (!a.pages.empty()) {
        rows.insert(3, {tr("Page size"), AnalysisTexts::pageSize(a.pages.front().widthPoints,
                                                                 a.pages.front().heightPoints)});
    }
    if (static_cast<int>(a.pages.size()) < a.pageCount) {
        rows.append({tr("Pages not analysed"),
                     QLocale().toString(a.pageCount - static_cast<int>(a.pages.size()))});
    }
    return facts(rows);
}

QString InspectorSheet::fontSummary(const std::vector<std::string>& fonts) {
    if (fonts.empty()) {
        return QStringLiteral("—");
    }
    const QString first = QString::fromStdString(fonts.front());
    return fonts.size() == 1
               ? first
               : tr("%1 and %n more", nullptr, static_cast<int>(fonts.size()) - 1).arg(first);
}

QString InspectorSheet::pages() const {
    QList<QStringList> rows;
    for (const PDFPageAnalysis& page : analysis_.pages) {
        double dpi = 0;
        for (const auto& image : page.images) {
            dpi += image.effectiveDPI;
        }
        const auto count = static_cast<int>(page.images.size());
        rows << QStringList{
            QLocale().toString(page.index + 1),
            AnalysisTexts::pageSize(page.widthPoints, page.heightPoints),
            QLocale().toString(count),
            count > 0 ? QLocale().toString(std::lround(dpi / count)) : QStringLiteral("—"),
            page.hasText ? tr("yes (%n operator(s))", nullptr, page.textOperatorCount) : tr("no"),
            fontSummary(page.fontNames)};
    }
    return table(
        {tr("Page"), tr("Size"), tr("Images"), tr("Effective DPI"), tr("Text"), tr("Fonts")}, rows);
}

QString InspectorSheet::images() const {
    QList<QStringList> rows;
    for (const PDFImageInfo& image : analysis_.images()) {
        const QString kind = image.isJPEG         ? tr("JPEG")
                             : image.isMonochrome ? tr("monochrome")
                                                  : tr("other");
        rows << QStringList{QLocale().toString(image.pageIndex + 1),
                            QStringLiteral("%1 × %2").arg(image.pixelWidth).arg(image.pixelHeight),
                            QLocale().toString(std::lround(image.effectiveDPI)),
                            Texts::bytes(image.estimatedBytes), kind};
    }
    if (rows.isEmpty()) {
        return tr("No images.");
    }
    return table({tr("Page"), tr("Pixels"), tr("DPI"), tr("Estimated bytes"), tr("Kind")}, rows);
}

QString InspectorSheet::fonts() const {
    std::map<std::string, std::pair<int, int>> usage; // font → first page, page count
    for (const PDFPageAnalysis& page : analysis_.pages) {
        for (const auto& font : page.fontNames) {
            auto [entry, added] = usage.try_emplace(font, page.index + 1, 0);
            ++entry->second.second;
        }
    }
    QList<QStringList> rows;
    for (const auto& [font, use] : usage) {
        rows << QStringList{QString::fromStdString(font), QLocale().toString(use.first),
                            QLocale().toString(use.second)};
    }
    if (rows.isEmpty()) {
        return tr("No fonts.");
    }
    return table({tr("Font"), tr("First page"), tr("Pages")}, rows);
}

QString InspectorSheet::metadata() const {
    const PDFMetadataInfo& m = analysis_.metadata;
    return facts({
        {tr("Title"), text(m.title)},
        {tr("Author"), text(m.author)},
        {tr("Subject"), text(m.subject)},
        {tr("Keywords"), text(m.keywords)},
        {tr("Creator"), text(m.creator)},
        {tr("Producer"), text(m.producer)},
        {tr("Created"), date(m.creationDate)},
        {tr("Modified"), date(m.modificationDate)},
    });
}

QString InspectorSheet::security() const {
    const PDFAnalysis& a = analysis_;
    const auto count = [](int value) { return QLocale().toString(value); };
    return facts({
        {tr("Encrypted"), yesNo(a.isEncrypted)},
        {tr("Attachments"), count(a.attachmentCount)},
        {tr("Form fields"), count(a.formFieldCount)},
        {tr("JavaScript"), yesNo(a.javascriptDetected)},
        {tr("External links"), count(a.externalLinkCount)},
        {tr("Annotations"), count(a.annotationCount)},
        {tr("Signatures"), count(a.signatureCount)},
    });
}

QString InspectorSheet::compression() const {
    const std::pair<CompressionQualityTier, QString> tiers[] = {
        {CompressionQualityTier::highQuality, tr("High Quality")},
        {CompressionQualityTier::balanced, tr("Balanced")},
        {CompressionQualityTier::smallest, tr("Smallest")},
        {CompressionQualityTier::lossless, tr("Lossless Optimize")},
    };
    QList<QStringList> rows;
    for (const auto& [tier, label] : tiers) {
        const auto predicted = AnalysisTexts::predictedBytes(analysis_, tier);
        rows << QStringList{label, Texts::sizeChange(analysis_.fileSize, predicted)};
    }
    return table({tr("Tier"), tr("Predicted size")}, rows) +
           QStringLiteral("<p>%1</p>")
               .arg(tr("Predictions come from the images found; the result of a real run may "
                       "differ.")
                        .toHtmlEscaped());
}

} // namespace quillet
