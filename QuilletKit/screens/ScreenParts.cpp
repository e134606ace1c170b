#include "screens/ScreenParts.hpp"

#include <QCheckBox>
#include <QCoreApplication>
#include <QFormLayout>

#include "app/AppModel.hpp"
#include "platform/FileTypes.hpp"
#include "screens/Components.hpp"

#include <QAccessible>
#include <QCoreApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QUrl>

#include <algorithm>
#include <limits>

namespace quillet {

ActionBar::ActionBar(const QString& action, QWidget* parent)
    : QWidget(parent), message_(new QLabel(this)), button_(new QPushButton(action, this)) {
    message_->setObjectName(QStringLiteral("message"));
    message_->setWordWrap(true);
    message_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    button_->setObjectName(QStringLiteral("run"));
    button_->setDefault(true);
    button_->setAutoDefault(true);
    button_->setMinimumWidth(120);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 6, 0, 0);
    layout->setSpacing(8);
    layout->addWidget(message_, 1);
    layout->addWidget(button_);
}

void ActionBar::addControl(QWidget* control) {
    auto* layout = static_cast<QHBoxLayout*>(this->layout());
    layout->insertWidget(layout->count() - 1, control);
}

void ActionBar::showNote(const QString& text) {
    problem_ = false;
    message_->setText(text);
    colour();
}

void ActionBar::showProblem(const QString& text) {
    problem_ = true;
    message_->setText(text);
    colour();
    if (!text.isEmpty() && QAccessible::isActive()) {
        QAccessibleEvent alert(message_, QAccessible::Alert);
        QAccessible::updateAccessibility(&alert);
    }
}

void ActionBar::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        colour();
    }
}

void ActionBar::colour() {
    // The colour is picked for the palette in use, so it stays readable after a switch to dark.
    QPalette palette = this->palette();
    const StateColors colours = StateColors::forPalette(palette);
    palette.setColor(QPalette::WindowText,
                     problem_ ? colours.failure : palette.color(QPalette::WindowText));
    message_->setPalette(palette);
}

PageSelection PageSelection::read(const QString& text, int pageCount, bool emptyMeansAll,
                                  const QString& example) {
    PageSelection selection;
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty()) {
        if (!emptyMeansAll) {
            selection.problem =
                QCoreApplication::translate("PageSelection", "Enter the pages, e.g. %1.")
                    .arg(example);
        }
        return selection;
    }
    static const QRegularExpression separators(QStringLiteral("[,; ]"));
    bool beyondEnd = false;
    for (QString piece : trimmed.split(separators, Qt::SkipEmptyParts)) {
        piece = piece.trimmed();
        if (piece.isEmpty()) {
            continue;
        }
        const std::string bytes = piece.toStdString();
        if (PDFSplitEngine::parseRanges(bytes, pageCount).empty()) {
            selection.problem =
                QCoreApplication::translate("PageSelection",
                                            "“%1” is not a page or a range of pages, e.g. %2.")
                    .arg(piece, example);
            return selection;
        }
        if (pageCount > 0) {
            for (const PageRange& range :
                 PDFSplitEngine::parseRanges(bytes, std::numeric_limits<int>::max())) {
                beyondEnd = beyondEnd || range.upper > pageCount;
            }
        }
    }
    selection.ranges = PDFSplitEngine::parseRanges(trimmed.toStdString(), pageCount);
    if (selection.ranges.empty()) { // separators alone
        selection.problem =
            QCoreApplication::translate("PageSelection", "Enter the pages, e.g. %1.").arg(example);
        return selection;
    }
    if (beyondEnd) {
        selection.warning = QCoreApplication::translate(
            "PageSelection", "The document has %n page(s): higher numbers mean the last page.",
            nullptr, pageCount);
    }
    return selection;
}

std::vector<int> PageSelection::pages() const {
    std::vector<int> pages;
    for (const PageRange& range : ranges) {
        for (int page = range.lower; page <= range.upper; ++page) {
            pages.push_back(page - 1);
        }
    }
    std::sort(pages.begin(), pages.end());
    pages.erase(std::unique(pages.begin(), pages.end()), pages.end());
    return pages;
}

QLabel* noteLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    return label;
}

QFormLayout* formLayout(QWidget* page, int margin) {
    auto* layout = new QFormLayout(page);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setHorizontalSpacing(12);
    layout->setVerticalSpacing(8);
    // Only what asks to grow does: the notes take the width, the fields keep theirs.
    layout->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    return layout;
}

std::vector<std::pair<QString, QCheckBox*>> redactionPresetBoxes(QWidget* parent,
                                                                 const QString& objectPrefix) {
    const auto text = [](const char* source) {
        return QCoreApplication::translate("RedactionPresets", source);
    };
    std::vector<std::pair<QString, QCheckBox*>> boxes;
    for (const auto& [preset, label] :
         {std::pair{"email", text("E-mail addresses")}, std::pair{"phone", text("Phone numbers")},
          std::pair{"iban", text("IBANs")}, std::pair{"card", text("Card numbers")},
          std::pair{"date", text("Dates")}}) {
        auto* box = new QCheckBox(label, parent);
        box->setObjectName(objectPrefix + QLatin1String(preset));
        boxes.emplace_back(QString::fromLatin1(preset), box);
    }
    return boxes;
}

namespace ScreenFiles {

namespace {

// By the name's last extension, as FileTypes reads it, without building a filesystem path: the
// screens ask this of every loaded file, and a folder may load 50,000.
std::optional<FileKind> kindOf(const QString& path) {
    const auto slash = path.lastIndexOf(QLatin1Char('/'));
    const auto dot = path.lastIndexOf(QLatin1Char('.'));
    if (dot <= slash + 1) {
        return std::nullopt;
    }
    return fileKindForExtension(path.mid(dot + 1).toStdString());
}

} // namespace

bool isPDF(const QString& path) {
    return kindOf(path) == FileKind::pdf;
}

bool isImage(const QString& path) {
    const auto kind = kindOf(path);
    return kind && quillet::isImage(*kind);
}

QString localPath(const std::string& pathOrURL) {
    const QString text = QString::fromStdString(pathOrURL);
    const QUrl url(text);
    return url.isLocalFile() ? url.toLocalFile() : text;
}

QStringList pdfs(const AppModel& model) {
    QStringList found;
    for (const QString& path : model.files()) {
        if (isPDF(path)) {
            found << path;
        }
    }
    return found;
}

QStringList images(const AppModel& model) {
    QStringList found;
    for (const QString& path : model.files()) {
        if (isImage(path)) {
            found << path;
        }
    }
    return found;
}

} // namespace ScreenFiles

} // namespace quillet
