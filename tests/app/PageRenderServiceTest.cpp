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
    service.render(request);
    QTest::qWait(50);
    QCOMPARE(rendered.count(), 1);
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
    service.render({qpath(pdf), 0, QSize(50, 50)});
    QTRY_COMPARE_WITH_TIMEOUT(rendered.count(), 1, 10000);
    QTest::qWait(200);
    QCOMPARE(rendered.count(), 1); // nothing asked for before the cancel arrives
}

void PageRenderServiceTest::loadedPDFsGetAThumbnail() {
    TempDir dir;
    const auto pdf = samplePDF(dir, "thumb.pdf");
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), realWorker());
    LoadedFilesModel list(app.model(), &app.renders());
    app.model().setSection(AppModel::Section::compress);
    app.model().acceptDropped(urls({pdf}));
    const auto picture = [&list] {
        return list.data(list.index(0), Qt::DecorationRole).value<QPixmap>().toImage();
    };
    QCOMPARE(picture().pixelColor(5, 5).alpha(), 0); // asked for, not drawn yet: a blank
    QTRY_COMPARE_WITH_TIMEOUT(picture().pixelColor(5, 5), QColor(Qt::white), 10000);
    QVERIFY(picture().height() <= LoadedFilesModel::thumbnailBox.height());
}

static RegisterSuite registered([] { return std::make_unique<PageRenderServiceTest>(); });

#include "PageRenderServiceTest.moc"
