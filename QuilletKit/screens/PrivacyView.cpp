#include "screens/PrivacyView.hpp"

#include "platform/TextRecognizer.hpp"
#include "screens/Coalesced.hpp"
#include "screens/ScreenParts.hpp"
#include "screens/RedactPanel.hpp"

#include <QButtonGroup>
#include <QCheckBox>
#include <QDateTime>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace quillet {
namespace {

struct PresetText {
    CleanPreset preset;
    QString label;
    QString line;
};

// Safe and Privacy do the same work; they are described from two sides so a user can pick by
// what matters to them. Both sentences are true of both.
QList<PresetText> presetTexts() {
    return {
        {CleanPreset::safe, PrivacyView::tr("Safe"),
         PrivacyView::tr("Removes the document's details (title, author, subject, keywords, "
                         "software, dates) and its XMP metadata. Pages, links and annotations "
                         "stay; bookmarks, forms, scripts and attachments are not kept.")},
        {CleanPreset::privacy, PrivacyView::tr("Privacy"),
         PrivacyView::tr("Removes every trace of who made the file and with what: document "
                         "details, XMP metadata on pages, images and fonts, editing data, "
                         "thumbnails, scripts and attachments. The file gets a new ID.")},
        {CleanPreset::flattenAndClean, PrivacyView::tr("Flatten & Clean"),
         PrivacyView::tr("Keeps only what a reader sees: annotations and filled-in form fields "
                         "are burnt into the pages, then everything interactive and all "
                         "metadata go.")},
    };
}

QString date(const std::chrono::system_clock::time_point& time) {
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time.time_since_epoch());
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds.count()), QLocale::ShortFormat);
}

/// The personal details of `metadata` that are present, as (name, value) pairs.
QList<QPair<QString, QString>> personalDetails(const PDFMetadataInfo& metadata) {
    QList<QPair<QString, QString>> details;
    const auto text = [&details](const QString& name, const std::optional<std::string>& value) {
        if (value && !value->empty()) {
            details.append({name, QString::fromStdString(*value)});
        }
    };
    text(PrivacyView::tr("Author"), metadata.author);
    text(PrivacyView::tr("Creator"), metadata.creator);
    text(PrivacyView::tr("Producer"), metadata.producer);
    text(PrivacyView::tr("Keywords"), metadata.keywords);
    if (metadata.creationDate) {
        details.append({PrivacyView::tr("Created"), date(*metadata.creationDate)});
    }
    if (metadata.modificationDate) {
        details.append({PrivacyView::tr("Modified"), date(*metadata.modificationDate)});
    }
    return details;
}

QLineEdit* passwordField(const QString& name, QWidget* parent) {
    auto* field = new QLineEdit(parent);
    field->setEchoMode(QLineEdit::Password);
    field->setAccessibleName(name);
    field->setMinimumWidth(240);
    field->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return field;
}

} // namespace

PrivacyView::PrivacyView(const ScreenContext& context, QWidget* parent)
    : QWidget(parent), context_(context) {
    bar_ = new ActionBar(tr("Clean"), this);
    connect(&bar_->button(), &QPushButton::clicked, this, &PrivacyView::runTask);
    tasks_ = new QTabWidget(this);
    tasks_->setObjectName(QStringLiteral("tasks"));
    tasks_->addTab(buildClean(), tr("Remove Metadata"));
    tasks_->addTab(buildProtect(), tr("Add Password"));
    tasks_->addTab(buildRemovePassword(), tr("Remove Password"));
    tasks_->addTab(buildMakeSearchable(), tr("Make Searchable"));
    redact_ = new RedactPanel(context_.app.renders(), tasks_);
    tasks_->addTab(redact_, tr("Redact"));
    connect(tasks_, &QTabWidget::currentChanged, this, &PrivacyView::refresh);
    connect(redact_, &RedactPanel::changed, this, &PrivacyView::refresh);
    connect(&context_.model().queue(), &TaskQueueService::recordsChanged, redact_,
            [this] { redact_->queueChanged(context_.model().queue().records()); });

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(12);
    layout->addWidget(tasks_, 1);
    layout->addWidget(bar_);

    AppModel& model = context_.model();
    connectWhenShown(&model, &AppModel::filesChanged, this, [this] {
        if (isVisible()) {
            context_.model().ensureAnalyses();
        }
        refreshMetadata();
        redact_->setFiles(ScreenFiles::pdfs(context_.model()));
        refresh();
    });
    connectCoalesced(&model, &AppModel::analysisChanged, this, &PrivacyView::refreshMetadata);
    connect(&model, &AppModel::suggestionOffered, this,
            [this](AppModel::Section section, const OperationParameters& suggested) {
                if (section != AppModel::Section::privacy) {
                    return;
                }
                if (const auto* clean = suggested.as<OperationParameters::Clean>()) {
                    selectTask(Task::clean);
                    selectPreset(clean->preset);
                } else if (suggested.as<OperationParameters::Unprotect>() != nullptr) {
                    selectTask(Task::removePassword);
                    current_->setFocus();
                } else if (suggested.as<OperationParameters::Protect>() != nullptr) {
                    selectTask(Task::protect);
                    password_->setFocus();
                } else if (const auto* redaction = suggested.as<OperationParameters::Redact>()) {
                    selectTask(Task::redact);
                    redact_->offer(*redaction);
                } else if (suggested.as<OperationParameters::OCR>() != nullptr) {
                    // A scanned document found on the home screen: read it in the languages
                    // ticked here (English unless changed).
                    selectTask(Task::makeSearchable);
                    runTask();
                }
            });
    refreshMetadata();
    redact_->setFiles(ScreenFiles::pdfs(context_.model()));
    refresh();
}

QWidget* PrivacyView::buildClean() {
    auto* page = new QWidget(this);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->setSpacing(8);
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(8);
    grid->setColumnStretch(1, 1);
    presets_ = new QButtonGroup(this);
    int row = 0;
    for (const PresetText& text : presetTexts()) {
        // A button reads "&" as the mark of its shortcut key.
        auto* radio = new QRadioButton(
            QString(text.label).replace(QLatin1Char('&'), QStringLiteral("&&")), page);
        radio->setObjectName(QStringLiteral("preset-%1")
                                 .arg(QString::fromStdString(std::string(rawValue(text.preset)))));
        radio->setAccessibleDescription(text.line);
        presets_->addButton(radio, static_cast<int>(text.preset));
        grid->addWidget(radio, row, 0, Qt::AlignTop);
        auto* line = new QLabel(text.line, page);
        line->setWordWrap(true);
        line->setForegroundRole(QPalette::PlaceholderText);
        grid->addWidget(line, row, 1, Qt::AlignTop);
        ++row;
    }
    selectPreset(CleanPreset::safe);

    metadata_ = new QTreeWidget(page);
    metadata_->setObjectName(QStringLiteral("metadata"));
    metadata_->setAccessibleName(tr("Personal details found in the files"));
    metadata_->setHeaderLabels({tr("Found in the files"), tr("Value")});
    metadata_->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    metadata_->header()->setStretchLastSection(true);
    metadata_->setTextElideMode(Qt::ElideMiddle);
    metadata_->setSelectionMode(QAbstractItemView::NoSelection);
    layout->addLayout(grid);
    layout->addWidget(metadata_, 1);
    return page;
}

QWidget* PrivacyView::buildProtect() {
    auto* page = new QWidget(this);
    QFormLayout* layout = formLayout(page, 12);
    password_ = passwordField(tr("Open password"), page);
    password_->setObjectName(QStringLiteral("password"));
    repeat_ = passwordField(tr("Repeat the open password"), page);
    repeat_->setObjectName(QStringLiteral("repeat"));
    owner_ = passwordField(tr("Owner password (optional)"), page);
    owner_->setObjectName(QStringLiteral("owner"));
    layout->addRow(tr("Open password:"), password_);
    layout->addRow(tr("Repeat:"), repeat_);
    layout->addRow(tr("Owner password:"), owner_);
    layout->addRow(
        QString(),
        noteLabel(tr("The file is encrypted with AES-256; it opens only with the open "
                     "password. Without an owner password, the open password is used for "
                     "both."),
                  page));
    for (QLineEdit* field : {password_, repeat_, owner_}) {
        connect(field, &QLineEdit::textChanged, this, &PrivacyView::refresh);
    }
    return page;
}

QWidget* PrivacyView::buildRemovePassword() {
    auto* page = new QWidget(this);
    QFormLayout* layout = formLayout(page, 12);
    current_ = passwordField(tr("Current password"), page);
    current_->setObjectName(QStringLiteral("current"));
    layout->addRow(tr("Current password:"), current_);
    layout->addRow(QString(),
                   noteLabel(tr("Writes a copy that opens without a password; the document "
                                "details are kept."),
                             page));
    connect(current_, &QLineEdit::textChanged, this, &PrivacyView::refresh);
    return page;
}

QWidget* PrivacyView::buildMakeSearchable() {
    auto* page = new QWidget(this);
    QFormLayout* layout = formLayout(page, 12);
    auto* boxes = new QWidget(page);
    auto* row = new QHBoxLayout(boxes);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(12);
    const QMap<QString, QString> names{{QStringLiteral("eng"), tr("English")},
                                       {QStringLiteral("chi_sim"), tr("Chinese (Simplified)")}};
    // English first: the first language ticked is the one Tesseract tries first.
    auto installed = TextRecognizer::installedLanguages();
    std::stable_partition(installed.begin(), installed.end(),
                          [](const std::string& code) { return code == "eng"; });
    for (const std::string& language : installed) {
        const QString code = QString::fromStdString(language);
        auto* box = new QCheckBox(names.value(code, code), boxes);
        box->setObjectName(QStringLiteral("language-%1").arg(code));
        box->setChecked(code == QLatin1String("eng"));
        connect(box, &QCheckBox::toggled, this, &PrivacyView::refresh);
        row->addWidget(box);
        languages_.append({code, box});
    }
    row->addStretch(1);
    layout->addRow(tr("Languages:"), boxes);
    layout->addRow(QString(),
                   noteLabel(tr("Pages without text get an invisible layer of the words read on "
                                "them, so they can be selected, copied and searched. Nothing "
                                "else changes: images are not re-encoded, and pages that "
                                "already have text are left as they are."),
                             page));
    return page;
}

std::string PrivacyView::languages() const {
    QStringList ticked;
    for (const auto& [code, box] : languages_) {
        if (box->isChecked()) {
            ticked << code;
        }
    }
    return ticked.join(QLatin1Char('+')).toStdString();
}

PrivacyView::Task PrivacyView::task() const {
    return static_cast<Task>(tasks_->currentIndex());
}

void PrivacyView::selectTask(Task task) {
    tasks_->setCurrentIndex(static_cast<int>(task));
}

CleanPreset PrivacyView::preset() const {
    return static_cast<CleanPreset>(presets_->checkedId());
}

void PrivacyView::selectPreset(CleanPreset preset) {
    presets_->button(static_cast<int>(preset))->setChecked(true);
}

void PrivacyView::refreshMetadata() {
    metadata_->clear();
    const QStringList pdfs = ScreenFiles::pdfs(context_.model());
    // A slice at a time: a folder may have loaded tens of thousands of files.
    filling_.start(static_cast<int>(pdfs.size()), [this, pdfs](int index) {
        const QString& path = pdfs.at(index);
        AppModel& model = context_.model();
        auto* file = new QTreeWidgetItem(metadata_, {QFileInfo(path).fileName()});
        file->setToolTip(0, path);
        if (const PDFAnalysis* analysis = model.analysis(path)) {
            const auto details = personalDetails(analysis->metadata);
            file->setText(1, details.isEmpty()
                                 ? tr("nothing personal found")
                                 : tr("%n detail(s)", nullptr, static_cast<int>(details.size())));
            for (const auto& [name, value] : details) {
                auto* item = new QTreeWidgetItem(file, {name, value});
                item->setToolTip(1, value);
            }
        } else if (model.isAnalyzing(path)) {
            file->setText(1, tr("Analysing…"));
        } else if (const QString error = model.analysisError(path); !error.isEmpty()) {
            file->setText(1, tr("could not be read: %1").arg(error));
        }
        file->setExpanded(true);
    });
}

QString PrivacyView::problem(bool running) const {
    const AppModel& model = context_.model();
    if (ScreenFiles::pdfs(model).isEmpty()) {
        if (model.files().isEmpty()) {
            return running ? tr("Drop PDFs above first.") : QString();
        }
        return tr("%1 is not a PDF: only PDFs can be cleaned, protected or made searchable.")
            .arg(QFileInfo(model.files().front()).fileName());
    }
    switch (task()) {
    case Task::clean: return {};
    case Task::protect:
        if (password_->text().isEmpty()) {
            return running ? tr("Enter an open password.") : QString();
        }
        if (repeat_->text() != password_->text() && (running || !repeat_->text().isEmpty())) {
            return tr("The two passwords do not match.");
        }
        return {};
    case Task::removePassword:
        return running && current_->text().isEmpty() ? tr("Enter the current password.")
                                                     : QString();
    case Task::makeSearchable:
        return languages().empty() ? tr("Tick at least one language.") : QString();
    case Task::redact: return redact_->problem(running);
    }
    return {};
}

void PrivacyView::refresh() {
    const QString actions[] = {tr("Clean"), tr("Protect"), tr("Remove Password"),
                               tr("Make Searchable"), tr("Redact")};
    bar_->button().setText(actions[tasks_->currentIndex()]);
    bar_->button().setEnabled(!context_.model().files().isEmpty());
    if (const QString why = problem(false); !why.isEmpty()) {
        bar_->showProblem(why);
        return;
    }
    const AppModel& model = context_.model();
    const auto pdfs = ScreenFiles::pdfs(model).size();
    QString text = pdfs == 0 ? tr("Drop PDFs above.")
                             : tr("%n PDF(s) loaded.", nullptr, static_cast<int>(pdfs));
    if (const auto others = model.files().size() - pdfs; pdfs > 0 && others > 0) {
        text += QLatin1Char(' ') +
                tr("%n other file(s) are left out.", nullptr, static_cast<int>(others));
    }
    bar_->showNote(text);
}

void PrivacyView::runTask() {
    if (const QString why = problem(true); !why.isEmpty()) {
        bar_->showProblem(why);
        return;
    }
    const QStringList pdfs = ScreenFiles::pdfs(context_.model());
    AppModel& model = context_.model();
    switch (task()) {
    case Task::clean:
        model.run(PDFOperationKind::clean, OperationParameters::Clean{preset()}, pdfs);
        break;
    case Task::protect:
        model.run(PDFOperationKind::protect,
                  OperationParameters::Protect{password_->text().toStdString(),
                                               owner_->text().toStdString()},
                  pdfs);
        for (QLineEdit* field : {password_, repeat_, owner_}) {
            field->clear();
        }
        break;
    case Task::removePassword:
        model.run(PDFOperationKind::unprotect,
                  OperationParameters::Unprotect{current_->text().toStdString()}, pdfs);
        current_->clear();
        break;
    case Task::makeSearchable:
        model.run(PDFOperationKind::ocr, OperationParameters::OCR{languages()}, pdfs);
        break;
    case Task::redact:
        for (const auto& [pdf, redaction] : redact_->jobs(pdfs)) {
            const auto id = model.run(PDFOperationKind::redact, redaction, QStringList{pdf});
            if (id && pdf == pdfs.front()) {
                redact_->watch(*id); // the file shown: its result can be compared with it
            }
        }
        redact_->clearAfterQueued();
        break;
    }
    bar_->showNote(
        tr("%n PDF(s) queued: follow them in the queue.", nullptr, static_cast<int>(pdfs.size())));
}

void PrivacyView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    context_.model().ensureAnalyses(); // the metadata found
}

} // namespace quillet
