// The home screen's cards and where their recommendations lead.
#include "app/AppTests.hpp"

#include "screens/CompressView.hpp"
#include "screens/FileCard.hpp"
#include "screens/HomeView.hpp"
#include "screens/InspectorSheet.hpp"
#include "screens/MainWindow.hpp"

#include <QLabel>
#include <QPushButton>
#include <QTabWidget>
#include <QTextBrowser>

using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

class HomeScreenTest : public QObject {
    Q_OBJECT

  private slots:
    void recommendationsOpenTheirSectionWithTheFile();
};

void HomeScreenTest::recommendationsOpenTheirSectionWithTheFile() {
    TempDir dir;
    const fs::path input = corpus("003-pdflatex-image/pdflatex-image.pdf");
    const auto broken = dir.write("broken.pdf", "%PDF-1.4\nnothing else\n");
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), realWorker());
    MainWindow window(app, [] {});
    window.show();
    auto* home = window.findChild<HomeView*>();
    auto* compress = window.findChild<CompressView*>();
    app.model().acceptDropped(urls({input, broken}));
    QCOMPARE(home->cards().size(), 2);

    // The damaged file says why; the good one gets its facts and its recommendations.
    FileCard* bad = home->cards()[1];
    QTRY_VERIFY_WITH_TIMEOUT(
        bad->findChild<QLabel*>("details")->text().contains("could not be read"), 20000);
    FileCard* card = home->cards()[0];
    const QString loaded = card->path();
    QPushButton* clean = nullptr;
    QTRY_VERIFY_WITH_TIMEOUT(
        (clean = card->findChild<QPushButton*>("recommendation-clean")) != nullptr, 20000);

    // Inspect shows what the analysis knows, selectable.
    QTest::mouseClick(card->findChild<QPushButton*>("inspect"), Qt::LeftButton);
    auto* sheet = home->findChild<InspectorSheet*>();
    QVERIFY(sheet != nullptr);
    QCOMPARE(sheet->tabs().count(), 7);
    const auto* metadata = qobject_cast<QTextBrowser*>(sheet->tabs().widget(4));
    QVERIFY(metadata->toPlainText().contains("pdfTeX"));
    sheet->close();

    QTest::mouseClick(clean, Qt::LeftButton);
    QCOMPARE(app.model().section(), AppModel::Section::privacy);
    QCOMPARE(app.model().files(), QStringList{loaded});

    // A suggestion for compress selects its tier on that screen.
    compress->setTarget(3 * 1024 * 1024);
    app.model().openWithSuggestion(AppModel::Section::compress, qpath(input),
                                   OperationParameters::Compress{CompressionQualityTier::balanced});
    QCOMPARE(compress->parameters(),
             OperationParameters(OperationParameters::Compress{CompressionQualityTier::balanced}));
}

static RegisterSuite registered([] { return std::make_unique<HomeScreenTest>(); });

#include "HomeScreenTest.moc"
