// Page pictures drawn off the main thread: sharp at the screen's pixel ratio, kept once drawn,
// failures named, and results of abandoned requests dropped.
#include "app/AppTests.hpp"

#include "app/LoadedFilesModel.hpp"
#include "app/PageRenderService.hpp"

#include <QSignalSpy>

using namespace quillet;
using namespace quillet::test;

class PageRenderServiceTest : public QObject {
    Q_OBJECT

  private slots:
    void rendersToFitTheBoxAtThePixelRatio();
    void failuresNameTheFile();
    void cancelledResultsAreDropped();
    void loadedPDFsGetAThumbnail();
};

void PageRenderServiceTest::rendersToFitTheBoxAtThePixelRatio() {
    TempDir dir;
    const auto pdf = samplePDF(dir, "letter.pdf", 2); // 612 × 792 points
    PageRenderService service(2);
    QSignalSpy rendered(&service, &PageRenderService::rendered);
    const PageRenderService::Request request{qpath(pdf), 1, QSize(100, 100), 2.0};
    QVERIFY(!service.cached(request));
    service.render(request);
    service.render(request); // already on its way: drawn once
    QTRY_COMPARE_WITH_TIMEOUT(rendered.count(), 1, 10000);

    const auto image = rendered[0][1].value<QImage>();
    QCOMPARE(image.height(), 200);            // the tall side fills the box, in device pixels
    QCOMPARE(image.width(), 612 * 200 / 792); // truncated, as the renderer sizes pages
    QCOMPARE(image.devicePixelRatio(), 2.0);
    QCOMPARE(image.pixelColor(2, 2), QColor(Qt::white));
    QVERIFY(service.cached(request));
    service.render(request); // cached: nothing to do
    QCOMPARE(service.pendingCount(), 0);
}

void PageRenderServiceTest::failuresNameTheFile() {
    TempDir dir;
    const auto damaged = dir.write("broken.pdf", "%PDF-1.4\nnothing else\n");
    PageRenderService service(1);
    QSignalSpy failed(&service, &PageRenderService::failed);
    service.render({qpath(damaged), 0});
    service.render({qpath(samplePDF(dir, "one.pdf")), 5}); // no such page
    QTRY_COMPARE_WITH_TIMEOUT(failed.count(), 2, 10000);
    QVERIFY(failed[0][1].toString().contains("broken.pdf"));
    QVERIFY(!failed[1][1].toString().isEmpty());
    QCOMPARE(service.pendingCount(), 0);
}

void PageRenderServiceTest::cancelledResultsAreDropped() {
    TempDir dir;
    const auto pdf = samplePDF(dir, "pages.pdf", 20);
    PageRenderService service(1);
    QSignalSpy rendered(&service, &PageRenderService::rendered);
    for (int page = 0; page < 20; ++page) {
        service.render({qpath(pdf), page, QSize(400, 400)});
    }
    service.cancelPending();
    QCOMPARE(service.pendingCount(), 0);
    const PageRenderService::Request wanted{qpath(pdf), 0, QSize(50, 50)};
    service.render(wanted);
    QTRY_COMPARE_WITH_TIMEOUT(rendered.count(), 1, 10000);
    // The page that was running at the cancel finishes before the new one on the single
    // thread: had its result been delivered, it would have come first.
    QCOMPARE(rendered[0][0].toString(), wanted.key());
}

void PageRenderServiceTest::loadedPDFsGetAThumbnail() {
    TempDir dir;
    const auto pdf = samplePDF(dir, "thumb.pdf");
    const auto broken = dir.write("broken.pdf", "%PDF-1.4\nnothing else\n");
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), realWorker());
    LoadedFilesModel list(app.model(), &app.renders());
    app.model().setSection(AppModel::Section::compress);
    app.model().acceptDropped(urls({pdf, broken}));
    const auto picture = [&list](int row) { // what a view painting the row asks for
        return list.data(list.index(row), LoadedFilesModel::ThumbnailRole).value<QPixmap>().toImage();
    };
    for (const int row : {0, 1}) { // not analysed yet: a blank, and the analysis starts
        QCOMPARE(picture(row).pixelColor(5, 5).alpha(), 0);
    }
    QTRY_COMPARE_WITH_TIMEOUT(picture(0).pixelColor(5, 5), QColor(Qt::white), 20000);
    QVERIFY(picture(0).height() <= LoadedFilesModel::thumbnailBox.height());
    // A file the worker could not analyse is never opened in the app.
    QTRY_VERIFY_WITH_TIMEOUT(!app.model().analysisError(qpath(broken)).isEmpty(), 20000);
    QCOMPARE(picture(1).pixelColor(5, 5).alpha(), 0);
    QCOMPARE(app.renders().pendingCount(), 0);
}

static RegisterSuite registered([] { return std::make_unique<PageRenderServiceTest>(); });

#include "PageRenderServiceTest.moc"
