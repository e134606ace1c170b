#include "screens/SettingsWindow.hpp"

#include "app/QuilletApp.hpp"
#include "output/OutputResolver.hpp"

#include <QCheckBox>
#include <QComboBox>
#include <QFileDialog>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollArea>
#include <QSpinBox>
#include <QVBoxLayout>

namespace quillet {
namespace {

QLabel* note(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    label->setWordWrap(true);
    label->setForegroundRole(QPalette::PlaceholderText);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    return label;
}

} // namespace

SettingsWindow::SettingsWindow(QuilletApp& app, std::function<void()> relaunch, QWidget* parent)
    : QDialog(parent), app_(app), relaunch_(std::move(relaunch)) {
    setWindowTitle(tr("Settings"));
    setObjectName(QStringLiteral("settings"));
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setSpacing(12);
    column->addWidget(appearanceGroup());
    column->addWidget(outputGroup());
    column->addWidget(languageGroup());
    column->addWidget(pagesGroup());
    column->addWidget(historyGroup());
    column->addWidget(privacyGroup());
    column->addStretch();
    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidget(content);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(scroll);
    resize(620, 760);
    refreshOutput();
    refreshLanguage();
    refreshHistory();
}

QWidget* SettingsWindow::appearanceGroup() {
    auto* group = new QGroupBox(tr("Appearance"));
    auto* choice = new QComboBox(group);
    choice->setObjectName(QStringLiteral("appearance"));
    choice->addItem(tr("System"), static_cast<int>(AppSettings::Appearance::system));
    choice->addItem(tr("Light"), static_cast<int>(AppSettings::Appearance::light));
    choice->addItem(tr("Dark"), static_cast<int>(AppSettings::Appearance::dark));
    choice->setCurrentIndex(choice->findData(static_cast<int>(app_.settings().appearance())));
    connect(choice, &QComboBox::activated, this, [this, choice] {
        app_.settings().setAppearance(
            static_cast<AppSettings::Appearance>(choice->currentData().toInt()));
    });
    auto* form = new QFormLayout(group);
    form->addRow(tr("Colours:"), choice);
    return group;
}

QWidget* SettingsWindow::outputGroup() {
    auto* group = new QGroupBox(tr("Output"));
    location_ = new QComboBox(group);
    location_->addItem(tr("Same folder as the original"),
                       static_cast<int>(OutputRule::Location::sameFolder));
    location_->addItem(tr("A subfolder next to the original"),
                       static_cast<int>(OutputRule::Location::subfolder));
    location_->addItem(tr("A folder of my choice"), static_cast<int>(OutputRule::Location::custom));
    subfolder_ = new QLineEdit(group);
    customFolder_ = new QLineEdit(group);
    customFolder_->setPlaceholderText(tr("No folder chosen"));
    chooseFolder_ = new QPushButton(tr("Choose…"), group);
    template_ = new QLineEdit(group);
    template_->setPlaceholderText(QStringLiteral("{name}-{action}"));
    example_ = new QLabel(group);
    example_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    example_->setWordWrap(true);
    replace_ = new QCheckBox(tr("Replace the original file"), group);
    replaceWarning_ = new QLabel(
        tr("The original is overwritten by the result and cannot be brought back. Keep a copy "
           "of anything you cannot afford to lose."),
        group);
    replaceWarning_->setWordWrap(true);
    QPalette warning = replaceWarning_->palette();
    warning.setColor(QPalette::WindowText, QColor(0xd0, 0x5a, 0x1c));
    replaceWarning_->setPalette(warning);

    const OutputRule& rule = app_.settings().outputRule();
    location_->setCurrentIndex(location_->findData(static_cast<int>(rule.location)));
    subfolder_->setText(QString::fromStdString(rule.subfolderName));
    customFolder_->setText(QString::fromStdString(rule.customFolder));
    template_->setText(QString::fromStdString(rule.nameTemplate));
    replace_->setChecked(rule.replaceOriginal);

    connect(location_, &QComboBox::activated, this, &SettingsWindow::saveOutputRule);
    connect(subfolder_, &QLineEdit::textEdited, this, &SettingsWindow::saveOutputRule);
    connect(customFolder_, &QLineEdit::textEdited, this, &SettingsWindow::saveOutputRule);
    connect(template_, &QLineEdit::textEdited, this, &SettingsWindow::saveOutputRule);
    connect(replace_, &QCheckBox::toggled, this, &SettingsWindow::saveOutputRule);
    connect(chooseFolder_, &QPushButton::clicked, this, [this] {
        const QString folder = QFileDialog::getExistingDirectory(
            this, tr("Choose the folder for results"), customFolder_->text());
        if (!folder.isEmpty()) {
            customFolder_->setText(folder);
            saveOutputRule();
        }
    });

    auto* custom = new QHBoxLayout;
    custom->addWidget(customFolder_, 1);
    custom->addWidget(chooseFolder_);
    auto* form = new QFormLayout(group);
    form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
    form->addRow(tr("Save results in:"), location_);
    form->addRow(tr("Subfolder name:"), subfolder_);
    form->addRow(tr("Folder:"), custom);
    auto* naming = new QVBoxLayout;
    naming->setSpacing(4);
    naming->addWidget(template_);
    naming->addWidget(note(tr("{name} the original name · {action} what was done "
                                    "(compressed, merged, …) · {date} date and time · "
                                    "{part} the part number of a split · {size} the word "
                                    "“sized”"),
                                 group));
    naming->addWidget(example_);
    auto* replacing = new QVBoxLayout;
    replacing->setSpacing(4);
    replacing->addWidget(replace_);
    replacing->addWidget(replaceWarning_);
    form->addRow(tr("File name:"), naming);
    form->addRow(QString(), replacing);
    return group;
}

void SettingsWindow::saveOutputRule() {
    OutputRule rule;
    rule.location = static_cast<OutputRule::Location>(location_->currentData().toInt());
    rule.subfolderName = subfolder_->text().toStdString();
    rule.customFolder = customFolder_->text().toStdString();
    rule.nameTemplate = template_->text().toStdString();
    rule.replaceOriginal = replace_->isChecked();
    app_.settings().setOutputRule(rule);
    refreshOutput();
}

void SettingsWindow::refreshOutput() {
    const OutputRule& rule = app_.settings().outputRule();
    subfolder_->setEnabled(rule.location == OutputRule::Location::subfolder);
    customFolder_->setEnabled(rule.location == OutputRule::Location::custom);
    chooseFolder_->setEnabled(rule.location == OutputRule::Location::custom);
    const std::string name = OutputResolver::applyTemplate(rule.nameTemplate, "report",
                                                           PDFOperationKind::compress,
                                                           std::nullopt) +
                             ".pdf";
    QString where;
    switch (rule.location) {
    case OutputRule::Location::sameFolder: where = QString::fromStdString(name); break;
    case OutputRule::Location::subfolder:
        where = QString::fromStdString(rule.subfolderName) + QLatin1Char('/') +
                QString::fromStdString(name);
        break;
    case OutputRule::Location::custom:
        where = QString::fromStdString((std::filesystem::path(rule.customFolder) / name).string());
        break;
    }
    example_->setText(tr("Example: report.pdf compressed becomes %1").arg(where));
    replaceWarning_->setVisible(rule.replaceOriginal);
}

QWidget* SettingsWindow::languageGroup() {
    auto* group = new QGroupBox(tr("Language"));
    auto* choice = new QComboBox(group);
    choice->setObjectName(QStringLiteral("language"));
    choice->addItem(tr("Automatic"), static_cast<int>(AppSettings::LanguageOverride::automatic));
    choice->addItem(QStringLiteral("English"), static_cast<int>(AppSettings::LanguageOverride::en));
    choice->addItem(QStringLiteral("简体中文"),
                    static_cast<int>(AppSettings::LanguageOverride::zhHans));
    choice->setCurrentIndex(
        choice->findData(static_cast<int>(app_.settings().languageOverride())));
    connect(choice, &QComboBox::activated, this, [this, choice] {
        app_.settings().setLanguageOverride(
            static_cast<AppSettings::LanguageOverride>(choice->currentData().toInt()));
    });
    connect(&app_.settings(), &AppSettings::languageChanged, this, [this, choice] {
        choice->setCurrentIndex(
            choice->findData(static_cast<int>(app_.settings().languageOverride())));
        refreshLanguage();
    });

    restart_ = new QWidget(group);
    auto* line = new QLabel(
        tr("Restart required — the new language takes effect after relaunching quillet."),
        restart_);
    line->setWordWrap(true);
    auto* relaunch = new QPushButton(tr("Relaunch"), restart_);
    relaunch->setObjectName(QStringLiteral("relaunch"));
    connect(relaunch, &QPushButton::clicked, this, [this] {
        if (app_.queue().isBusy() &&
            QMessageBox::question(this, tr("Relaunch"),
                                  tr("A job is still running. Relaunching stops it; jobs that "
                                     "wait are offered again after the relaunch.")) !=
                QMessageBox::Yes) {
            return;
        }
        if (relaunch_) {
            relaunch_();
        }
    });
    auto* restartRow = new QHBoxLayout(restart_);
    restartRow->setContentsMargins(0, 0, 0, 0);
    restartRow->addWidget(line, 1);
    restartRow->addWidget(relaunch);

    auto* form = new QFormLayout(group);
    form->addRow(tr("Language:"), choice);
    form->addRow(restart_);
    return group;
}

void SettingsWindow::refreshLanguage() {
    restart_->setVisible(app_.settings().languageNeedsRelaunch());
}

QWidget* SettingsWindow::pagesGroup() {
    auto* group = new QGroupBox(tr("Drawing pages"));
    auto* limit = new QSpinBox(group);
    limit->setObjectName(QStringLiteral("renderTimeout"));
    limit->setRange(0, AppSettings::maximumRenderTimeoutSeconds);
    limit->setSuffix(tr(" s"));
    limit->setSpecialValueText(tr("No limit"));
    limit->setValue(app_.settings().renderTimeoutSeconds());
    connect(limit, &QSpinBox::valueChanged, this,
            [this](int seconds) { app_.settings().setRenderTimeoutSeconds(seconds); });
    auto* form = new QFormLayout(group);
    form->addRow(tr("Time limit per page:"), limit);
    form->addRow(note(tr("A page still drawing after this time is skipped when pages become "
                         "images, and its preview shows why. Some damaged or hostile files draw "
                         "for hours."),
                      group));
    return group;
}

QWidget* SettingsWindow::historyGroup() {
    auto* group = new QGroupBox(tr("History"));
    clearHistory_ = new QPushButton(tr("Clear history"), group);
    clearHistory_->setObjectName(QStringLiteral("clearHistory"));
    connect(clearHistory_, &QPushButton::clicked, this, [this] {
        if (QMessageBox::question(this, tr("Clear history"),
                                  tr("Remove every finished job from the history? Your files "
                                     "are not touched.")) == QMessageBox::Yes) {
            app_.history().clear();
        }
    });
    connect(&app_.model(), &AppModel::historyChanged, this, &SettingsWindow::refreshHistory);
    auto* layout = new QVBoxLayout(group);
    layout->addWidget(note(tr("The history keeps what was done to which file and the sizes, "
                              "never the documents themselves."),
                           group));
    layout->addWidget(clearHistory_, 0, Qt::AlignLeft);
    return group;
}

void SettingsWindow::refreshHistory() {
    const auto count = static_cast<int>(app_.history().entries().size());
    clearHistory_->setEnabled(count > 0);
    clearHistory_->setToolTip(tr("%n finished job(s) in the history", nullptr, count));
}

QWidget* SettingsWindow::privacyGroup() {
    auto* group = new QGroupBox(tr("Statistics"));
    auto* share = new QCheckBox(tr("Share anonymous usage statistics"), group);
    share->setObjectName(QStringLiteral("analytics"));
    share->setChecked(app_.settings().analyticsEnabled());
    connect(share, &QCheckBox::toggled, this,
            [this](bool on) { app_.settings().setAnalyticsEnabled(on); });
    auto* layout = new QVBoxLayout(group);
    layout->addWidget(share);
    layout->addWidget(note(tr("Quillet sends nothing anywhere, whatever this switch says: no "
                              "statistics, no documents, no file names. Your choice is only "
                              "remembered."),
                           group));
    return group;
}

} // namespace quillet
