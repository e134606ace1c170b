// The organize screen with real documents: qpdf edits them on the controller's thread, MuPDF
// draws the thumbnails, and what is saved is read back with qpdf. Page k of a sample is told
// apart by the page index its picture comes from.
#include "app/AppTests.hpp"

#include "app/LoadedFilesModel.hpp"
#include "app/OrganizeController.hpp"
#include "screens/OrganizePageGrid.hpp"
#include "screens/OrganizePageModel.hpp"
#include "screens/OrganizeView.hpp"
#include "support/IndependentChecks.hpp"
#include "support/PDFBuilder.hpp"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QLabel>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QToolButton>

#include <qpdf/QPDF.hh>

using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

namespace {

/// The app and a shown organize screen with `file` dropped on it, its pages in the grid.
struct Screen {
    explicit Screen(const TempDir& dir)
        : settings(settingsIn(dir)), app(*settings, dir.path(), realWorker()),
          files(app.model(), &app.renders()), view(ScreenContext{app, files}) {
        view.resize(900, 640);
        view.show();
        view.activateWindow(); // shortcuts work in the active window only
        QVERIFY(QTest::qWaitForWindowActive(&view));
    }

    void drop(const fs::path& file) { app.model().acceptDropped(urls({file})); }
    OrganizePageModel& pages() { return view.pages(); }
    QAction& action(const char* name) { return *view.findChild<QAction*>(name); }
    QString status() { return view.findChild<QLabel*>("status")->text(); }

    /// "page@rotation" of every cell, as the screen was told.
    QStringList cells() {
        QStringList result;
        for (const auto& cell : pages().cells()) {
            result << QStringLiteral("%1@%2").arg(cell.sourcePage).arg(cell.displayRotation);
        }
        return result;
    }

    QList<int> selectedRows() {
        QList<int> rows;
        for (const auto& index : view.grid().selectionModel()->selectedIndexes()) {
            rows << index.row();
        }
        std::sort(rows.begin(), rows.end());
        return rows;
    }

    void select(const QList<int>& rows) {
        auto* selection = view.grid().selectionModel();
        selection->clear();
        for (const int row : rows) {
            selection->select(pages().index(row), QItemSelectionModel::Select);
        }
    }

    bool idle() { return !view.controller().isBusy(); }

    std::unique_ptr<AppSettings> settings;
    QuilletApp app;
    LoadedFilesModel files;
    OrganizeView view;
};

int pageCount(const fs::path& file) {
    QPDF qpdf;
    qpdf.processFile(file.c_str());
    return static_cast<int>(qpdf.getAllPages().size());
}

void click(OrganizePageGrid& grid, int row, Qt::KeyboardModifiers modifiers = {}) {
    const QRect cell = grid.visualRect(grid.model()->index(row, 0));
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, modifiers, cell.center());
}

} // namespace

class OrganizeViewTest : public QObject {
    Q_OBJECT

  private slots:
    void drawsOnlyThePagesInSightAndRefusesALockedFile();
    void selectRotateAndUndo();
    void aDropOnACellMovesTheDraggedPage();
    void signedDocumentSavesOnlyAfterConfirmation();
    void aDragOutGetsAFileOfTheSelection();
};

void OrganizeViewTest::drawsOnlyThePagesInSightAndRefusesALockedFile() {
    TempDir dir;
    Screen screen(dir);
    QAbstractItemModelTester tester(&screen.pages());
    QSignalSpy drawn(&screen.app.renders(), &PageRenderService::rendered);
    screen.drop(samplePDF(dir, "long.pdf", 300));
    QTRY_COMPARE(screen.pages().rowCount(), 300);
    QVERIFY(screen.status().startsWith(QStringLiteral("300 page")));
    QTRY_VERIFY(!screen.pages().picture(0).isNull());
    QTRY_COMPARE(screen.app.renders().pendingCount(), 0);
    QVERIFY2(drawn.count() < 60, qPrintable(QString::number(drawn.count())));
    QVERIFY(screen.pages().picture(299).isNull());
    screen.view.grid().scrollToBottom();
    QTRY_VERIFY(!screen.pages().picture(299).isNull());

    screen.drop(corpus("005-libreoffice-writer-password/libreoffice-writer-password.pdf"));
    QMessageBox* error = nullptr;
    QTRY_VERIFY((error = screen.view.findChild<QMessageBox*>("organizeError")) != nullptr);
    QVERIFY(error->text().contains(QStringLiteral("libreoffice-writer-password.pdf")));
    QVERIFY(error->text().contains(QStringLiteral("password")));
    QCOMPARE(screen.pages().rowCount(), 300);
    QCOMPARE(screen.view.controller().state().sourcePath, qpath(dir / "long.pdf"));
}

void OrganizeViewTest::selectRotateAndUndo() {
    TempDir dir;
    Screen screen(dir);
    screen.drop(samplePDF(dir, "four.pdf", 4));
    QTRY_COMPARE(screen.pages().rowCount(), 4);
    OrganizePageGrid& grid = screen.view.grid();
    click(grid, 0);
    click(grid, 2, Qt::ShiftModifier);
    QCOMPARE(screen.selectedRows(), (QList<int>{0, 1, 2}));
    click(grid, 1, Qt::ControlModifier);
    QCOMPARE(screen.selectedRows(), (QList<int>{0, 2}));
    QVERIFY(screen.status().endsWith(QStringLiteral("2 selected")));

    QTest::mouseClick(screen.view.findChild<QToolButton*>("rotateRightButton"), Qt::LeftButton);
    QVERIFY2(!screen.action("rotateRight").isEnabled(), "actions stay enabled while busy");
    QTRY_VERIFY(screen.idle());
    QCOMPARE(screen.cells(), (QStringList{"0@90", "1@0", "2@90", "3@0"}));
    QCOMPARE(screen.pages().turn(0), 90);
    QCOMPARE(screen.selectedRows(), (QList<int>{0, 2}));

    QTest::keyClick(&grid, Qt::Key_Z, Qt::ControlModifier);
    QTRY_VERIFY(screen.idle());
    QCOMPARE(screen.cells(), (QStringList{"0@0", "1@0", "2@0", "3@0"}));
    QCOMPARE(screen.selectedRows(), (QList<int>{0, 2}));
    QVERIFY(!screen.action("undo").isEnabled());

    // Unsaved changes are not thrown away by a file loaded elsewhere without asking.
    screen.select({3});
    screen.action("delete").trigger();
    QTRY_VERIFY(screen.idle());
    screen.drop(samplePDF(dir, "other.pdf", 2));
    QMessageBox* ask = nullptr;
    QTRY_VERIFY((ask = screen.view.findChild<QMessageBox*>("discardChanges")) != nullptr);
    QCOMPARE(screen.pages().rowCount(), 3);
    QTest::mouseClick(ask->findChild<QPushButton*>("discard"), Qt::LeftButton);
    QTRY_COMPARE(screen.pages().rowCount(), 2);
}

void OrganizeViewTest::aDropOnACellMovesTheDraggedPage() {
    TempDir dir;
    Screen screen(dir);
    screen.drop(samplePDF(dir, "four.pdf", 4));
    QTRY_COMPARE(screen.pages().rowCount(), 4);
    std::unique_ptr<QMimeData> dragged(screen.pages().mimeData({screen.pages().index(0)}));
    QCOMPARE(dragged->text(), QStringLiteral("0"));
    QVERIFY(screen.pages().dropMimeData(dragged.get(), Qt::MoveAction, -1, -1,
                                        screen.pages().index(2)));
    QTRY_VERIFY(screen.idle());
    QCOMPARE(screen.cells(), (QStringList{"1@0", "2@0", "0@0", "3@0"}));

    QMimeData foreign;
    foreign.setText(QStringLiteral("two"));
    QVERIFY(
        !screen.pages().dropMimeData(&foreign, Qt::MoveAction, -1, -1, screen.pages().index(0)));
    QVERIFY(screen.idle());
}

void OrganizeViewTest::signedDocumentSavesOnlyAfterConfirmation() {
    TempDir dir;
    PDFBuilder builder;
    builder.addPage().text("Signed page");
    builder.addPage().text("Second page");
    builder.page(0).signatureField("Approval");
    const fs::path signedFile = builder.write(dir / "signed.pdf");
    Screen screen(dir);
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = (dir / "out").string();
    screen.settings->setOutputRule(rule);
    screen.drop(signedFile);
    QTRY_COMPARE(screen.pages().rowCount(), 2);
    screen.select({1});
    screen.action("rotateRight").trigger();
    QTRY_VERIFY(screen.idle());

    for (const char* answer : {"cancel", "saveAnyway"}) {
        screen.view.activateWindow(); // the offscreen platform does not give it back
        QVERIFY(QTest::qWaitForWindowActive(&screen.view));
        QTest::keyClick(&screen.view.grid(), Qt::Key_S, Qt::ControlModifier);
        QMessageBox* box = nullptr;
        QTRY_VERIFY((box = screen.view.findChild<QMessageBox*>("signatureWarning")) != nullptr &&
                    box->isVisible());
        QCOMPARE(box->windowTitle(), QStringLiteral("This PDF may contain digital signatures"));
        QVERIFY(!fs::exists(dir / "out"));
        QTest::mouseClick(box->findChild<QPushButton*>(answer), Qt::LeftButton);
        QTRY_VERIFY(screen.view.findChild<QMessageBox*>("signatureWarning") == nullptr);
        QTRY_VERIFY(screen.idle());
    }
    const fs::path saved = dir / "out" / "signed-organized.pdf";
    QTRY_VERIFY(screen.view.findChild<QLabel*>("result")->toolTip() ==
                QStringLiteral("Saved: ") + qpath(saved));
    QCOMPARE(runTool("qpdf", {"--check", saved.string()}).status, 0);
    QCOMPARE(pageCount(saved), 2);
    QCOMPARE(static_cast<int>(screen.app.history().entries().size()), 1);
}

void OrganizeViewTest::aDragOutGetsAFileOfTheSelection() {
    TempDir dir;
    QString dragged;
    {
        Screen screen(dir);
        screen.drop(samplePDF(dir, "four.pdf", 4));
        QTRY_COMPARE(screen.pages().rowCount(), 4);
        QSignalSpy ready(&screen.view.controller(), &OrganizeController::dragFileReady);
        std::set<PageID> ids{screen.pages().cells()[1].id, screen.pages().cells()[3].id};
        screen.view.controller().extractForDrag(ids);
        QTRY_COMPARE(ready.count(), 1);
        dragged = ready[0][0].toString();
        QCOMPARE(QFileInfo(dragged).fileName(), QStringLiteral("four-extracted.pdf"));
        QCOMPARE(pageCount(dragged.toStdString()), 2);
        QVERIFY(screen.app.history().entries().empty());
    }
    QVERIFY2(!QFileInfo::exists(dragged), "the dragged file outlived the screen");
}

static RegisterSuite registered([] { return std::make_unique<OrganizeViewTest>(); });

#include "OrganizeViewTest.moc"
