// Drops a 1,000-page PDF on a section of the real window (offscreen) and measures, with a 5 ms
// timer on the main thread, the longest gap between two ticks from the drop until the first
// screen of thumbnails is drawn, and how long that took. Goals: no stall over 50 ms, thumbnails
// in sight within 1 s. Then drops a folder of 50,000 files (a scanner archive) on the batch and
// home sections and measures the same until every file is loaded and shown.
//
//   quillet_app_stall [SOURCE.pdf]   (default: a four-page document of the shared corpus)
#include "app/AppSettings.hpp"
#include "app/QuilletApp.hpp"
#include "screens/Components.hpp"
#include "screens/FileCard.hpp"
#include "screens/HomeView.hpp"
#include "screens/MainWindow.hpp"
#include "screens/OrganizePageGrid.hpp"
#include "screens/OrganizePageModel.hpp"
#include "screens/OrganizeView.hpp"
#include "screens/SectionView.hpp"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QLabel>
#include <QMimeData>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

using namespace quillet;

namespace {

constexpr int pageTarget = 1000;

/// `pageTarget` pages made by qpdf from copies of `source`'s pages.
QString longPDF(const QString& source, const QString& folder) {
    QProcess count;
    count.start(QStringLiteral("qpdf"), {QStringLiteral("--show-npages"), source});
    count.waitForFinished();
    const int pages = std::max(1, count.readAllStandardOutput().trimmed().toInt());
    QStringList arguments{QStringLiteral("--empty"), QStringLiteral("--pages")};
    for (int made = 0; made < pageTarget; made += pages) {
        arguments << source << QStringLiteral("1-%1").arg(std::min(pages, pageTarget - made));
    }
    const QString output = folder + QStringLiteral("/long.pdf");
    arguments << QStringLiteral("--") << output;
    QProcess qpdf;
    qpdf.start(QStringLiteral("qpdf"), arguments);
    qpdf.waitForFinished(-1);
    if (qpdf.exitCode() != 0 && qpdf.exitCode() != 3) { // 3: written with warnings
        std::fprintf(stderr, "qpdf failed: %s\n", qpdf.readAllStandardError().constData());
        std::exit(2);
    }
    return output;
}

void drop(QWidget& target, const QString& file) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file)});
    const QPoint centre = target.rect().center();
    QDragEnterEvent enter(centre, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &enter);
    QDropEvent event(QPointF(centre), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&target, &event);
}

void settle(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

bool organizeDrawn(MainWindow& window) {
    auto* view = window.findChild<OrganizeView*>();
    if (view == nullptr || view->pages().rowCount() != pageTarget) {
        return false;
    }
    const auto rows = view->grid().rowsInSight();
    return !rows.isEmpty() && std::all_of(rows.begin(), rows.end(),
                                          [&](int row) { return view->pages().isCurrent(row); });
}

bool homeDrawn(MainWindow& window, QuilletApp& app, const QString& file) {
    auto* home = window.findChild<HomeView*>();
    if (home == nullptr || home->cards().isEmpty() || app.model().analysis(file) == nullptr) {
        return false;
    }
    const auto labels = home->cards().first()->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(),
                       [](QLabel* label) { return !label->pixmap().isNull(); });
}

/// A folder of `count` small PDFs in subfolders of a thousand, as a scanner leaves them.
QString archive(const QString& folder, int count) {
    const QString root = folder + QStringLiteral("/archive");
    for (int i = 0; i < count; ++i) {
        const QString sub =
            QStringLiteral("%1/%2").arg(root).arg(i / 1000, 3, 10, QLatin1Char('0'));
        if (i % 1000 == 0) {
            QDir().mkpath(sub);
        }
        QFile file(QStringLiteral("%1/scan-%2.pdf").arg(sub).arg(i, 6, 10, QLatin1Char('0')));
        file.open(QIODevice::WriteOnly);
        file.write("%PDF-1.4\n");
    }
    return root;
}

/// Drops `file` (a PDF, or a folder of `expectedFiles` files) on `section` of a fresh window and
/// reports the longest stall.
void probe(AppModel::Section section, const QString& file, const QString& support,
           int expectedFiles = 0) {
    AppSettings settings(std::make_unique<QSettings>(support + QStringLiteral("/quillet.conf"),
                                                     QSettings::IniFormat));
    QuilletApp app(settings, support.toStdString(), {QStringLiteral(QUILLET_BINARY)});
    MainWindow window(app, [] {});
    window.resize(1280, 860);
    window.show();
    app.model().setSection(section);
    settle(500);

    const auto drawn = [&] {
        if (expectedFiles > 0) {
            return app.model().files().size() == expectedFiles;
        }
        return section == AppModel::Section::organize ? organizeDrawn(window)
                                                      : homeDrawn(window, app, file);
    };
    QElapsedTimer clock;
    qint64 lastTick = 0;
    qint64 longest = 0;
    qint64 visibleAt = -1;
    int ticksAfter = 0;
    QEventLoop loop;
    QTimer ticker;
    ticker.setTimerType(Qt::PreciseTimer);
    ticker.setInterval(5);
    QObject::connect(&ticker, &QTimer::timeout, [&] {
        const qint64 now = clock.elapsed();
        longest = std::max(longest, now - lastTick);
        lastTick = now;
        if (visibleAt < 0 && drawn()) {
            visibleAt = now;
            window.repaint(); // the frame that shows them counts too
        } else if (visibleAt >= 0 && ++ticksAfter >= 3) {
            loop.quit();
        }
        if (now > 60000) {
            loop.quit();
        }
    });
    clock.start();
    ticker.start();
    drop(window.section(static_cast<int>(section)).dropZone(), file);
    loop.exec();
    if (expectedFiles > 0) {
        std::printf("%-9s longest stall %4lld ms (goal < 50)   %d files of a folder loaded after "
                    "%5lld ms\n",
                    qPrintable(AppModel::rawValue(section)), static_cast<long long>(longest),
                    expectedFiles, static_cast<long long>(visibleAt));
        return;
    }
    std::printf("%-9s longest stall %4lld ms (goal < 50)   thumbnails in sight after %5lld ms "
                "(goal < 1000)\n",
                qPrintable(AppModel::rawValue(section)), static_cast<long long>(longest),
                static_cast<long long>(visibleAt));
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application(argc, argv);
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString source =
        argc > 1 ? QString::fromLocal8Bit(argv[1])
                 : QStringLiteral(QUILLET_CORPUS_DIR "/004-pdflatex-4-pages/pdflatex-4-pages.pdf");
    QTemporaryDir folder;
    const QString file = longPDF(source, folder.path());
    std::printf("%d pages made from %s\n", pageTarget, qPrintable(source));
    for (const auto section : {AppModel::Section::organize, AppModel::Section::home}) {
        QTemporaryDir support;
        probe(section, file, support.path());
    }
    constexpr int archiveFiles = 50000;
    const QString scans = archive(folder.path(), archiveFiles);
    std::printf("a folder of %d files\n", archiveFiles);
    for (const auto section : {AppModel::Section::batch, AppModel::Section::home}) {
        QTemporaryDir support;
        probe(section, scans, support.path(), archiveFiles);
    }
    return 0;
}
