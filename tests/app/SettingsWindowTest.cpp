// The settings window: every change is saved at once and read back by a fresh start, the naming
// example follows the rule, the history is cleared only when confirmed, a new language offers a
// relaunch; and the appearances forced on the application and given back.
#include "app/AppTests.hpp"

#include "screens/Appearance.hpp"
#include "screens/SettingsWindow.hpp"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QSpinBox>
#include <QStyle>
#include <QTimer>

using namespace quillet;
using namespace quillet::test;

namespace {

/// Chooses the row as a person does (the window listens to `activated` only).
void choose(QComboBox* box, int row) {
    box->setCurrentIndex(row);
    emit box->activated(row);
}

template <typename Widget>
Widget* find(const QWidget& window, const std::function<bool(const Widget*)>& is) {
    const auto all = window.findChildren<Widget*>();
    const auto found = std::find_if(all.begin(), all.end(), is);
    return found == all.end() ? nullptr : *found;
}

} // namespace

class SettingsWindowTest : public QObject {
    Q_OBJECT

  private slots:
    void changesAreSavedAtOnce();
    void appearancesAreForcedAndGivenBack();
};

void SettingsWindowTest::changesAreSavedAtOnce() {
    TempDir dir;
    auto settings = settingsIn(dir);
    QuilletApp app(*settings, dir.path(), realWorker());
    HistoryEntry done;
    done.id = "A1";
    done.date = TaskClock::now();
    app.history().add(done);
    int relaunched = 0;
    SettingsWindow window(app, [&relaunched] { ++relaunched; });
    window.show();

    window.findChild<QSpinBox*>("renderTimeout")->setValue(7);
    choose(window.findChild<QComboBox*>("appearance"), 2);
    window.findChild<QCheckBox*>("analytics")->setChecked(true);
    QTest::keyClicks(
        find<QLineEdit>(window, [](auto* e) { return e->placeholderText() == "{name}-{action}"; }),
        "-v2");
    choose(
        find<QComboBox>(window, [](auto* b) { return b->itemText(2) == "A folder of my choice"; }),
        1);
    QVERIFY(!find<QLineEdit>(window, [](auto* e) {
                 return e->placeholderText() == "No folder chosen";
             })->isEnabled());
    find<QCheckBox>(window, [](auto* b) {
        return b->text() == "Replace the original file";
    })->setChecked(true);
    QVERIFY(find<QLabel>(window, [](auto* l) {
        return l->text() ==
               "Example: report.pdf compressed becomes Processed/report-compressed-v2.pdf";
    }));
    QVERIFY(!find<QLabel>(window, [](auto* l) {
                 return l->text().startsWith("The original is");
             })->isHidden());

    // Cleared only once confirmed.
    auto* clear = window.findChild<QPushButton*>("clearHistory");
    QVERIFY(clear->isEnabled());
    for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
        QTimer::singleShot(0, [answer] {
            qobject_cast<QMessageBox*>(QApplication::activeModalWidget())->button(answer)->click();
        });
        QTest::mouseClick(clear, Qt::LeftButton);
        QCOMPARE(app.history().entries().empty(), answer == QMessageBox::Yes);
    }
    QVERIFY(!clear->isEnabled());

    choose(window.findChild<QComboBox*>("language"), 2);
    auto* relaunch = window.findChild<QPushButton*>("relaunch");
    QVERIFY(relaunch->isVisible());
    QTest::mouseClick(relaunch, Qt::LeftButton);
    QCOMPARE(relaunched, 1);

    const auto reread = settingsIn(dir);
    QCOMPARE(reread->renderTimeoutSeconds(), 7);
    QCOMPARE(reread->appearance(), AppSettings::Appearance::dark);
    QVERIFY(reread->analyticsEnabled());
    QCOMPARE(reread->languageOverride(), AppSettings::LanguageOverride::zhHans);
    OutputRule rule;
    rule.location = OutputRule::Location::subfolder;
    rule.nameTemplate = "{name}-{action}-v2";
    rule.replaceOriginal = true;
    QCOMPARE(reread->outputRule(), rule);
}

void SettingsWindowTest::appearancesAreForcedAndGivenBack() {
    const QString style = QApplication::style()->name();
    const QPalette palette = QApplication::palette();
    Appearance::apply(AppSettings::Appearance::dark);
    QCOMPARE(QApplication::style()->name().toLower(), QStringLiteral("fusion"));
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() < 64);
    Appearance::apply(AppSettings::Appearance::light);
    QVERIFY(QApplication::palette().color(QPalette::Window).lightness() > 224);
    Appearance::apply(AppSettings::Appearance::system);
    QCOMPARE(QApplication::style()->name(), style);
    QVERIFY(QApplication::palette() == palette);
}

static RegisterSuite registered([] { return std::make_unique<SettingsWindowTest>(); });

#include "SettingsWindowTest.moc"
