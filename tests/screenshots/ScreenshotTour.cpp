// quillet_screenshots OUTDIR LANGUAGE APPEARANCE: draws every section of the real window, the
// settings window and a queue with finished, failed, running and waiting jobs into PNG files,
// for people to look at (scripts/screenshots.sh runs it for both languages and both looks).
//
// The jobs and analyses are real: the `quillet` program does the work, through a wrapper that
// holds back a job whose spec mentions "slow" so that one row stays running. Results go to a
// temporary folder; the corpus is only read.
#include "app/QuilletApp.hpp"
#include "screens/Appearance.hpp"
#include "screens/BeforeAfterView.hpp"
#include "screens/CompressView.hpp"
#include "screens/InspectorSheet.hpp"
#include "screens/MainWindow.hpp"
#include "screens/OrganizePageGrid.hpp"
#include "screens/OrganizePageModel.hpp"
#include "screens/OrganizeView.hpp"
#include "screens/PrivacyView.hpp"
#include "screens/SectionView.hpp"
#include "screens/SettingsWindow.hpp"
#include "screens/StampView.hpp"
#include "tasks/PersistedList.hpp"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QRadioButton>
#include <QLabel>
#include <QElapsedTimer>
#include <QTemporaryDir>
#include <QThread>

#include <cstdio>
#include <fstream>

using namespace quillet;
namespace fs = std::filesystem;

namespace {

const char* const wrapper =
    R"(if [ "$1" = job ]; then spec=$(cat); case "$spec" in *slow*) exec sleep 60;; esac; )"
    R"(printf '%s' "$spec" | exec "$0" "$@"; else exec "$0" "$@"; fi)";

bool waitFor(const std::function<bool()>& done, int milliseconds = 60000) {
    QElapsedTimer timer;
    timer.start();
    while (!done()) {
        if (timer.elapsed() > milliseconds) {
            return false;
        }
        QApplication::processEvents(QEventLoop::AllEvents, 50);
        QThread::msleep(20);
    }
    return true;
}

void settle() {
    for (int i = 0; i < 10; ++i) {
        QApplication::processEvents();
        QThread::msleep(10);
    }
}

void save(QWidget& widget, const QString& path) {
    settle();
    if (!widget.grab().save(path)) {
        std::fprintf(stderr, "could not write %s\n", qPrintable(path));
    }
}

QString corpus(const char* relative) {
    return QString::fromUtf8(test::corpusFolder()) + QLatin1Char('/') + QString::fromLatin1(relative);
}

} // namespace

int main(int argc, char** argv) {
    QApplication qt(argc, argv);
    if (argc != 4) {
        std::fputs("usage: quillet_screenshots OUTDIR en|zh_CN light|dark\n", stderr);
        return 2;
    }
    const QString out = QString::fromLocal8Bit(argv[1]);
    const QString language = QString::fromLocal8Bit(argv[2]);
    const bool dark = QString::fromLocal8Bit(argv[3]) == QStringLiteral("dark");
    QTemporaryDir work;
    const fs::path folder = work.path().toStdString();

    // An interrupted run leaves two waiting jobs, so the banner shows.
    const auto waiting = TaskSpec::make(PDFOperationKind::compress,
                                        {corpus("001-trivial/minimal-document.pdf").toStdString()},
                                        OutputRule{}, OperationParameters::Compress{});
    PersistedList::save(folder / "queue.json", std::vector<TaskSpec>{waiting, waiting});

    auto settings = std::make_unique<AppSettings>(std::make_unique<QSettings>(
        QString::fromStdString((folder / "quillet.conf").string()), QSettings::IniFormat));
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = (folder / "results").string();
    settings->setOutputRule(rule);
    settings->setAppearance(dark ? AppSettings::Appearance::dark : AppSettings::Appearance::light);
    QuilletApp::installTranslations(language);
    Appearance::apply(settings->appearance());

    QuilletApp app(*settings, folder, {"/bin/sh", "-c", wrapper, QUILLET_BINARY});
    MainWindow window(app, [] {});
    window.resize(1280, 800);
    window.show();

    AppModel& model = app.model();
    const QStringList pdfs{corpus("003-pdflatex-image/pdflatex-image.pdf"),
                           corpus("004-pdflatex-4-pages/pdflatex-4-pages.pdf"),
                           corpus("005-libreoffice-writer-password/libreoffice-writer-password.pdf")};
    QList<QUrl> urls;
    for (const QString& path : pdfs) {
        urls << QUrl::fromLocalFile(path);
    }
    model.acceptDropped(urls);

    const fs::path damaged = folder / "damaged.pdf";
    std::ofstream(damaged) << "%PDF-1.7\nthis is not a PDF body\n";
    std::ofstream(folder / "slow.pdf") << "%PDF-1.4\n";
    model.run(PDFOperationKind::compress,
              OperationParameters::Compress{CompressionQualityTier::balanced}, QStringList{pdfs[0]});
    model.run(PDFOperationKind::compress, OperationParameters::Compress{},
              QStringList{QString::fromStdString(damaged.string())});
    model.run(PDFOperationKind::merge, OperationParameters::Merge{}, QStringList{pdfs[0], pdfs[1]});
    model.run(PDFOperationKind::compress, OperationParameters::Compress{},
              QStringList{QString::fromStdString((folder / "slow.pdf").string())});
    model.run(PDFOperationKind::split, OperationParameters::Split{}, QStringList{pdfs[1]});

    const bool ready = waitFor([&] {
        const auto& records = app.queue().records();
        const bool jobsThere = records.size() == 5 && records[3].state == TaskState::running;
        const bool analysed = std::none_of(pdfs.begin(), pdfs.end(), [&](const QString& path) {
            return model.isAnalyzing(path);
        });
        return jobsThere && analysed;
    });
    if (!ready) {
        std::fputs("the jobs or analyses did not reach the expected states in time\n", stderr);
    }

    const QString prefix = out + QLatin1Char('/') + language + (dark ? "-dark-" : "-light-");
    for (int i = 0; i < AppModel::sectionCount; ++i) {
        const auto section = static_cast<AppModel::Section>(i);
        model.setSection(section);
        save(window, prefix + QStringLiteral("%1-%2.png").arg(i + 1).arg(AppModel::rawValue(section)));
    }
    // The compress screen's comparison of the finished job, and the inspector of a file.
    model.setSection(AppModel::Section::compress);
    auto* compress = window.findChild<CompressView*>();
    compress->showComparison(pdfs[0],
                             QString::fromStdString(app.queue().records()[0].outputURLs.at(0)));
    waitFor([&] { return !compress->comparison().findChild<QLabel*>()->pixmap().isNull(); }, 10000);
    settle();
    save(window, prefix + QStringLiteral("12-before-after.png"));
    model.setSection(AppModel::Section::home);
    model.acceptDropped({QUrl::fromLocalFile(pdfs[0])});
    waitFor([&] { return model.analysis(model.files().value(0)) != nullptr; }, 20000);
    if (const PDFAnalysis* analysis = model.analysis(model.files().value(0))) {
        InspectorSheet sheet(model.files().value(0), *analysis, &window);
        sheet.show();
        sheet.tabs().setCurrentIndex(1);
        save(sheet, prefix + QStringLiteral("13-inspector.png"));
    }

    // The section screens with their options: the batch password, images into a PDF, and a
    // page text the split screen refuses.
    const auto body = [&window](AppModel::Section section) {
        return window.section(static_cast<int>(section)).body();
    };
    model.setSection(AppModel::Section::batch);
    body(AppModel::Section::batch)->findChild<QComboBox*>("action")->setCurrentIndex(8);
    save(window, prefix + QStringLiteral("14-batch-password.png"));
    model.setSection(AppModel::Section::convert);
    model.acceptDropped({QUrl::fromLocalFile(corpus("007-imagemagick-images/smile.png")),
                         QUrl::fromLocalFile(corpus("003-pdflatex-image/image.jpg"))});
    save(window, prefix + QStringLiteral("15-convert-images.png"));
    model.setSection(AppModel::Section::split);
    model.acceptDropped({QUrl::fromLocalFile(pdfs[1])});
    waitFor([&] { return model.analysis(pdfs[1]) != nullptr; }, 20000);
    QWidget* split = body(AppModel::Section::split);
    split->findChild<QRadioButton*>("mode-pageRanges")->setChecked(true);
    split->findChild<QLineEdit*>("ranges")->setText(QStringLiteral("1-2, 3-"));
    save(window, prefix + QStringLiteral("16-split-ranges.png"));
    model.setSection(AppModel::Section::privacy);
    window.findChild<PrivacyView*>()->selectTask(PrivacyView::Task::makeSearchable);
    save(window, prefix + QStringLiteral("17-privacy-searchable.png"));
    // Redact: the four-page document searched for a made-up name, its matches shown on the page.
    model.acceptDropped({QUrl::fromLocalFile(pdfs[1])});
    auto* privacy = window.findChild<PrivacyView*>();
    privacy->selectTask(PrivacyView::Task::redact);
    privacy->findChild<QLineEdit*>("redactSearch")->setText(QStringLiteral("Huardest gefburn"));
    privacy->findChild<QPushButton*>("redactFind")->click();
    waitFor([&] { return privacy->findChild<QTreeWidget*>("redactMatches")->topLevelItemCount() > 0; },
            20000);
    settle();
    save(window, prefix + QStringLiteral("17b-privacy-redact.png"));

    // Organize: a document with turned pages and a long one inserted after it, two pages
    // selected, one of them turned by hand.
    model.setSection(AppModel::Section::organize);
    model.acceptDropped({QUrl::fromLocalFile(corpus("015-arabic/habibi-rotated.pdf"))});
    auto* organize = window.findChild<OrganizeView*>();
    waitFor([&] { return organize->pages().rowCount() == 4; }, 20000);
    organize->controller().insertFiles({corpus("009-pdflatex-geotopo/GeoTopo-komprimiert.pdf")});
    organize->controller().rotate({organize->pages().cells().at(1).id}, 90);
    waitFor([&] { return !organize->controller().isBusy(); }, 20000);
    organize->grid().selectionModel()->select(
        QItemSelection(organize->pages().index(1), organize->pages().index(2)),
        QItemSelectionModel::ClearAndSelect);
    waitFor([&] {
        const auto rows = organize->grid().rowsInSight();
        return std::all_of(rows.begin(), rows.end(),
                           [&](int row) { return organize->pages().isCurrent(row); });
    }, 20000);
    save(window, prefix + QStringLiteral("20-organize.png"));

    // Stamp: numbers in the reader's language at the foot of the four-page document and a
    // diagonal watermark, as the engine draws them in the preview.
    model.setSection(AppModel::Section::stamp);
    model.acceptDropped({QUrl::fromLocalFile(pdfs[1])});
    auto* stamp = window.findChild<StampView*>();
    stamp->findChild<QLineEdit*>("format")->setText(language == QStringLiteral("en")
                                                        ? QStringLiteral("Page {n} of {total}")
                                                        : QStringLiteral("第 {n} 页，共 {total} 页"));
    stamp->addMark("text");
    stamp->showPage(1);
    int previews = 0;
    QObject::connect(stamp, &StampView::previewChanged, stamp, [&previews] { ++previews; });
    waitFor([] { return false; }, 1000);
    previews = 0;
    waitFor([&] { return previews > 0 || !stamp->preview().isNull(); }, 20000);
    waitFor([] { return false; }, 700);
    settle();
    save(window, prefix + QStringLiteral("21-stamp.png"));

    window.openSettings();
    settings->setLanguageOverride(language == QStringLiteral("en")
                                      ? AppSettings::LanguageOverride::zhHans
                                      : AppSettings::LanguageOverride::en);
    save(*window.settingsWindow(), prefix + QStringLiteral("10-settings.png"));
    window.settingsWindow()->close();
    app.queue().discardPending();
    window.resize(900, 600);
    model.setSection(AppModel::Section::compress);
    save(window, prefix + QStringLiteral("11-small-window.png"));
    for (const auto& record : app.queue().records()) {
        app.queue().cancel(record.id);
    }
    return ready ? 0 : 1;
}
