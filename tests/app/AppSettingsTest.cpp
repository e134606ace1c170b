// Settings: what each stored value reads as, and what changing the language writes.
#include "app/AppTests.hpp"

#include <QSettings>

using namespace quillet;
using namespace quillet::test;

namespace {

using Stored = QMap<QString, QVariant>;
using Appearance = AppSettings::Appearance;
using Language = AppSettings::LanguageOverride;

} // namespace

class AppSettingsTest : public QObject {
    Q_OBJECT

  private slots:
    void load_data();
    void load();
    void outputRuleIsStoredFieldByField();
    void languageChanges();
};

void AppSettingsTest::load_data() {
    QTest::addColumn<Stored>("stored");
    QTest::addColumn<int>("appearance");
    QTest::addColumn<int>("location");
    QTest::addColumn<QString>("subfolder");
    QTest::addColumn<QString>("nameTemplate");
    QTest::addColumn<bool>("replace");
    QTest::addColumn<bool>("analytics");
    QTest::addColumn<int>("language");
    const int same = static_cast<int>(OutputRule::Location::sameFolder);
    const int sub = static_cast<int>(OutputRule::Location::subfolder);
    const auto system = static_cast<int>(Appearance::system);
    const auto automatic = static_cast<int>(Language::automatic);

    QTest::newRow("nothing stored") << Stored{} << system << same << "Processed"
                                    << "{name}-{action}" << false << false << automatic;
    QTest::newRow("every key") << Stored{{"appearance", "dark"},
                                         {"outputLocation", "subfolder"},
                                         {"subfolderName", "Out"},
                                         {"nameTemplate", "{date}-{name}"},
                                         {"replaceOriginal", true},
                                         {"analyticsEnabled", true},
                                         {"languageOverride", "zh-Hans"}}
                               << static_cast<int>(Appearance::dark) << sub << "Out"
                               << "{date}-{name}" << true << true
                               << static_cast<int>(Language::zhHans);
    // An unknown location keeps the default while the other rule fields still load.
    QTest::newRow("unknown location") << Stored{{"outputLocation", "elsewhere"},
                                                {"subfolderName", "Kept"}}
                                      << system << same << "Kept"
                                      << "{name}-{action}" << false << false << automatic;
    QTest::newRow("empty texts replace the defaults")
        << Stored{{"subfolderName", ""}, {"nameTemplate", ""}} << system << same << "" << ""
        << false << false << automatic;
    QTest::newRow("unknown appearance and language")
        << Stored{{"appearance", "sepia"}, {"languageOverride", "fr"}} << system << same
        << "Processed"
        << "{name}-{action}" << false << false << automatic;
    QTest::newRow("raw values are case-sensitive")
        << Stored{{"appearance", "Dark"}, {"outputLocation", "Custom"}, {"languageOverride", "EN"}}
        << system << same << "Processed"
        << "{name}-{action}" << false << false << automatic;
}

void AppSettingsTest::load() {
    QFETCH(Stored, stored);
    TempDir dir;
    {
        QSettings file(qpath(dir / "quillet.conf"), QSettings::IniFormat);
        for (auto it = stored.begin(); it != stored.end(); ++it) {
            file.setValue(it.key(), it.value());
        }
    }
    const auto settings = settingsIn(dir);
    QTEST(static_cast<int>(settings->appearance()), "appearance");
    QTEST(static_cast<int>(settings->outputRule().location), "location");
    QTEST(QString::fromStdString(settings->outputRule().subfolderName), "subfolder");
    QTEST(QString::fromStdString(settings->outputRule().nameTemplate), "nameTemplate");
    QTEST(settings->outputRule().replaceOriginal, "replace");
    QTEST(settings->analyticsEnabled(), "analytics");
    QTEST(static_cast<int>(settings->languageOverride()), "language");
    QVERIFY(!settings->languageNeedsRelaunch());
}

void AppSettingsTest::outputRuleIsStoredFieldByField() {
    TempDir dir;
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = "/srv/out";
    rule.nameTemplate = "{name}";
    rule.replaceOriginal = true;
    settingsIn(dir)->setOutputRule(rule);

    QSettings file(qpath(dir / "quillet.conf"), QSettings::IniFormat);
    QCOMPARE(file.value("outputLocation").toString(), QStringLiteral("custom"));
    QCOMPARE(file.value("customFolder").toString(), QStringLiteral("/srv/out"));
    QCOMPARE(file.value("subfolderName").toString(), QStringLiteral("Processed"));
    QCOMPARE(file.value("replaceOriginal").toBool(), true);
    QCOMPARE(settingsIn(dir)->outputRule(), rule);
}

void AppSettingsTest::languageChanges() {
    TempDir dir;
    const auto settings = settingsIn(dir);
    const auto stored = [&dir](const char* key) {
        return QSettings(qpath(dir / "quillet.conf"), QSettings::IniFormat).value(key);
    };

    settings->setLanguageOverride(Language::en);
    QVERIFY(settings->languageNeedsRelaunch());
    QCOMPARE(stored("languageOverride").toString(), QStringLiteral("en"));
    QCOMPARE(stored("AppleLanguages").toStringList(), QStringList{"en"});
    QCOMPARE(settings->effectiveLanguage(), QStringLiteral("en"));

    settings->setLanguageOverride(Language::en); // the same again: nothing to relaunch for
    QVERIFY(!settings->languageNeedsRelaunch());

    settings->setLanguageOverride(Language::zhHans);
    QCOMPARE(stored("AppleLanguages").toStringList(), QStringList{"zh-Hans"});
    QCOMPARE(settings->effectiveLanguage(), QStringLiteral("zh_CN"));

    settings->setLanguageOverride(Language::automatic);
    QVERIFY(settings->languageNeedsRelaunch());
    QCOMPARE(stored("languageOverride").toString(), QStringLiteral("auto"));
    QVERIFY(!stored("AppleLanguages").isValid());
    // A new start reads the choice back, with nothing waiting for a relaunch.
    QCOMPARE(settingsIn(dir)->languageOverride(), Language::automatic);
}

static RegisterSuite registered([] { return std::make_unique<AppSettingsTest>(); });

#include "AppSettingsTest.moc"
