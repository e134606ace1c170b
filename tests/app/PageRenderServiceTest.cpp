// Thumbnails of loaded files, drawn off the main thread; none for a file that cannot be read.
#include "app/AppTests.hpp"

#include "app/LoadedFilesModel.hpp"
#include "app/PageRenderService.hpp"

using namespace quillet;
using namespace quillet::test;

class PageRenderServiceTest : public QObject {
    Q_OBJECT

  private slots:
    void loadedPDFsGetAThumbnail();
};

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
