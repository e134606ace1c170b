// File-manager actions: the plan of each word, the files an invocation carries, the entries each
// file manager loads, a `--service` launch handing its action to the running instance, and one
// action routed through the model and the real queue.
#include "app/AppTests.hpp"

#include "app/ApplicationBus.hpp"
#include "app/ServicesProvider.hpp"
#include "app/ServicesRouter.hpp"

#include <QDBusConnection>
#include <QDeadlineTimer>
#include <QFile>
#include <QMimeDatabase>
#include <QProcess>
#include <QRegularExpression>
#include <QSignalSpy>

#include <map>
#include <set>

using namespace quillet;
using namespace quillet::test;
namespace fs = std::filesystem;

namespace {

const fs::path entriesFolder =
    fs::path(sourceFolder()) / "data" / "filemanager";

const QStringList imageTypes{"image/png",  "image/jpeg", "image/tiff", "image/heif",
                             "image/avif", "image/webp", "image/gif"};

const std::map<QString, QString> titles{{"compress", "Compress with Quillet"},
                                        {"merge", "Merge with Quillet"},
                                        {"convert", "Convert to PNG with Quillet"},
                                        {"clean", "Remove metadata with Quillet"},
                                        {"images", "Make a PDF with Quillet"},
                                        {"ocr", "Make searchable with Quillet"}};

/// MIME names as the database knows them, so an alias and its type compare equal.
std::set<QString> canonical(const QStringList& names) {
    QMimeDatabase database;
    std::set<QString> result;
    for (const QString& name : names) {
        if (!name.isEmpty()) {
            result.insert(database.mimeTypeForName(name).name());
        }
    }
    return result;
}

std::set<QString> typesFor(const QString& word) {
    QStringList names = imageTypes;
    if (word == "merge") {
        names << "application/pdf";
    } else if (word != "images") {
        names = {"application/pdf"};
    }
    return canonical(names);
}

/// One action of one file manager.
struct Entry {
    QString where;
    QString command;
    std::set<QString> types;
    QString title;
    QString translatedTitle;
};

using Groups = std::map<QString, std::map<QString, QString>>;

Groups keyFile(const QString& text) {
    Groups groups;
    QString group;
    for (const QString& line : text.split('\n')) {
        if (line.startsWith('[') && line.endsWith(']')) {
            group = line.mid(1, line.size() - 2);
        } else if (const auto equals = line.indexOf('='); equals > 0 && !line.startsWith('#')) {
            groups[group][line.left(equals)] = line.mid(equals + 1);
        }
    }
    return groups;
}

// Dolphin and Thunar keep Name and MimeType in the entry, Caja/PCManFM put MimeTypes in the
// profile, Nemo spells it Mimetypes: each key is looked up in the command's group first.
void keyFileEntries(const QString& where, const QString& text, std::vector<Entry>& entries) {
    Groups groups = keyFile(text);
    const auto main =
        groups.contains("Nemo Action") ? groups["Nemo Action"] : groups["Desktop Entry"];
    for (auto& [name, keys] : groups) {
        if (!keys.contains("Exec")) {
            continue;
        }
        auto find = [&](const QStringList& candidates) {
            for (const QString& key : candidates) {
                if (keys.contains(key)) {
                    return keys[key];
                }
            }
            for (const QString& key : candidates) {
                if (main.contains(key)) {
                    return main.at(key);
                }
            }
            return QString();
        };
        entries.push_back({where + " [" + name + "]", keys["Exec"],
                           canonical(find({"MimeType", "MimeTypes", "Mimetypes"}).split(';')),
                           find({"Name"}), find({"Name[zh_CN]"})});
    }
}

void thunarEntries(const QString& where, const QString& text, std::vector<Entry>& entries) {
    static const QRegularExpression action("<action>(.*?)</action>",
                                           QRegularExpression::DotMatchesEverythingOption);
    auto field = [](const QString& block, const QString& pattern) {
        return QRegularExpression(pattern).match(block).captured(1);
    };
    QMimeDatabase database;
    for (auto it = action.globalMatch(text); it.hasNext();) {
        const QString block = it.next().captured(1);
        QStringList types;
        for (const QString& pattern : field(block, "<patterns>(.*)</patterns>").split(';')) {
            // Thunar matches names, so an extension the MIME database lacks (".jfif") is fine.
            const QMimeType type =
                database.mimeTypeForFile("x" + pattern.mid(1), QMimeDatabase::MatchExtension);
            if (!type.isDefault()) {
                types << type.name();
            }
        }
        entries.push_back({where, field(block, "<command>(.*)</command>"), canonical(types),
                           field(block, "<name>(.*)</name>"),
                           field(block, "<name xml:lang=\"zh_CN\">(.*)</name>")});
    }
}

void nautilusEntries(const QString& where, const QString& text, std::vector<Entry>& entries) {
    std::map<QString, QStringList> constants;
    static const QRegularExpression constant("^(PDF|IMAGES) = \\((.*)\\)$",
                                             QRegularExpression::MultilineOption);
    for (auto it = constant.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        constants[match.captured(1)] =
            match.captured(2).remove('"').remove(' ').split(',', Qt::SkipEmptyParts);
    }
    QVERIFY(text.contains("COMMAND = [\"quillet-app\", \"--service\"]"));
    static const QRegularExpression entry(
        "\\(\"(\\w+)\", ([A-Z +]+), \\d, \"([^\"]+)\", \\{\"zh_CN\": \"([^\"]+)\"\\}\\)");
    for (auto it = entry.globalMatch(text); it.hasNext();) {
        const auto match = it.next();
        QStringList types;
        for (const QString& name : match.captured(2).split('+')) {
            types << constants[name.trimmed()];
        }
        entries.push_back({where, "quillet-app --service " + match.captured(1) + " %F",
                           canonical(types), match.captured(3), match.captured(4)});
    }
}

} // namespace

class ServicesTest : public QObject {
    Q_OBJECT

  private slots:
    void planTable();
    void payloadRules();
    void everyFileManagerEntryNamesAKnownWordAndItsTypes();
    void serviceLaunchHandsTheActionToTheRunningInstance();
    void anActionRunsThroughTheModelAndQueue();
};

void ServicesTest::planTable() {
    struct Row {
        std::optional<QString> word;
        std::optional<ServicesRouter::Plan> plan;
    };
    using P = OperationParameters;
    const std::vector<Row> rows{
        {"compress", {{PDFOperationKind::compress, P::Compress{CompressionQualityTier::balanced}}}},
        {"merge", {{PDFOperationKind::merge, P::Merge{false}}}},
        {"convert", {{PDFOperationKind::pdfToImages, P::PDFToImages{"png", 150, "", 0.85}}}},
        {"clean", {{PDFOperationKind::clean, P::Clean{CleanPreset::privacy}}}},
        {"images", {{PDFOperationKind::imagesToPDF, P::ImagesToPDF{"original", "fit", 0}}}},
        {"ocr", {{PDFOperationKind::ocr, P::OCR{"eng"}}}},
        {"Compress", std::nullopt},
        {"compress ", std::nullopt},
        {"OCR", std::nullopt},
        {"", std::nullopt},
        {std::nullopt, std::nullopt},
    };
    for (const Row& row : rows) {
        const auto plan = ServicesRouter::plan(row.word);
        const QByteArray what = row.word.value_or("(absent)").toUtf8();
        QVERIFY2(plan.has_value() == row.plan.has_value(), what);
        if (plan) {
            QVERIFY2(plan->operation == row.plan->operation, what);
            QVERIFY2(plan->parameters == row.plan->parameters, what);
        }
    }
}

void ServicesTest::payloadRules() {
    using U = QList<QUrl>;
    const QUrl a = QUrl::fromLocalFile("/home/me/a b.pdf");
    const QUrl b = QUrl::fromLocalFile("/home/me/b.png");
    const std::vector<std::pair<QStringList, U>> rows{
        {{a.toString(QUrl::FullyEncoded), b.toString(QUrl::FullyEncoded)}, {a, b}},
        // file URIs win; everything else beside them is ignored
        {{"https://example.org/x.pdf", b.toString(), "/home/me/c.pdf", a.toString()}, {b, a}},
        {{"/home/me/a b.pdf", "/home/me/b.png"}, {a, b}},
        {{"/home/me/a b.pdf", "notes.pdf"}, {}},
        {{"Please compress the report"}, {}},
        {{"/tmp is where\nthe files are"}, {}},
        {{"https://example.org/x.pdf"}, {}},
        {{}, {}},
    };
    for (const auto& [payload, expected] : rows) {
        QCOMPARE(ServicesRouter::fileURLs(payload), expected);
    }
}

void ServicesTest::everyFileManagerEntryNamesAKnownWordAndItsTypes() {
    std::vector<Entry> entries;
    std::map<QString, std::set<QString>> wordsByManager;
    for (const auto& item : fs::recursive_directory_iterator(entriesFolder)) {
        const fs::path path = item.path();
        const auto ext = path.extension();
        QFile file(qpath(path));
        if (!item.is_regular_file() || path.filename() == "CMakeLists.txt" ||
            !file.open(QIODevice::ReadOnly)) {
            continue;
        }
        const QString text = QString::fromUtf8(file.readAll());
        const QString where = qpath(fs::relative(path, entriesFolder));
        const auto before = entries.size();
        if (ext == ".desktop" || ext == ".nemo_action") {
            keyFileEntries(where, text, entries);
        } else if (ext == ".xml") {
            thunarEntries(where, text, entries);
        } else if (ext == ".py") {
            nautilusEntries(where, text, entries);
        }
        QVERIFY2(entries.size() > before, qPrintable(where + " holds no action"));
        const QString manager =
            qpath(fs::relative(path.parent_path(), entriesFolder)) + ext.c_str();
        for (auto it = entries.begin() + before; it != entries.end(); ++it) {
            wordsByManager[manager].insert(it->command.section(' ', 2, 2));
        }
    }

    static const QRegularExpression command("^quillet-app --service (\\S+) %F$");
    for (const Entry& entry : entries) {
        const QByteArray where = entry.where.toUtf8();
        const auto match = command.match(entry.command);
        QVERIFY2(match.hasMatch(), where);
        const QString word = match.captured(1);
        QVERIFY2(ServicesRouter::plan(word).has_value(), where);
        QVERIFY2(entry.types == typesFor(word),
                 where + ": " +
                     QStringList(entry.types.begin(), entry.types.end()).join(' ').toUtf8());
        QVERIFY2(entry.title == titles.at(word), where);
        QVERIFY2(!entry.translatedTitle.isEmpty() && entry.translatedTitle != entry.title, where);
    }
    QCOMPARE(wordsByManager.size(), 6u); // Dolphin, Nemo, Nautilus, FM actions, Thunar twice
    for (const auto& [manager, words] : wordsByManager) {
        QVERIFY2(words.size() == 6, qPrintable(manager));
    }
    // Every image type offered is one the app loads.
    QMimeDatabase database;
    for (const QString& type : imageTypes) {
        const QMimeType mime = database.mimeTypeForName(type);
        QVERIFY2(mime.isValid() && AppModel::isAccepted("x." + mime.preferredSuffix()),
                 qPrintable(type));
    }
}

void ServicesTest::serviceLaunchHandsTheActionToTheRunningInstance() {
    if (!QDBusConnection::sessionBus().isConnected()) {
        QSKIP("no session bus");
    }
    TempDir dir;
    const auto pdf = samplePDF(dir, "a.pdf");
    const auto png = dir.write("b.png", "");
    ApplicationBus bus;
    QCOMPARE(bus.claim(), ApplicationBus::Claim::owned);
    QSignalSpy actions(&bus, &ApplicationBus::actionRequested);

    auto launch = [&](const QStringList& arguments) {
        QProcess second;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("XDG_CONFIG_HOME", qpath(dir / "config"));
        environment.insert("XDG_DATA_HOME", qpath(dir / "data"));
        second.setProcessEnvironment(environment);
        second.setWorkingDirectory(qpath(dir.path()));
        second.start(QString::fromUtf8(QUILLET_APP_BINARY), arguments);
        // The bus call of the second process is answered by this thread's event loop.
        QDeadlineTimer deadline(20000);
        while (second.state() != QProcess::NotRunning && !deadline.hasExpired()) {
            QTest::qWait(20);
        }
        return second.exitStatus() == QProcess::NormalExit ? second.exitCode() : -1;
    };
    QCOMPARE(launch({"--service", "Merge", "a.pdf"}), 2);
    QCOMPARE(launch({"--service", "merge", "a.pdf", qpath(png)}), 0);
    QTRY_COMPARE_WITH_TIMEOUT(actions.count(), 1, 5000);
    QCOMPARE(actions[0][0].toString(), QStringLiteral("merge"));
    const auto parameter = actions[0][1].value<QVariantList>();
    QCOMPARE(parameter.size(), 1);
    QCOMPARE(parameter[0].toStringList(),
             (QStringList{QUrl::fromLocalFile(qpath(pdf)).toString(),
                          QUrl::fromLocalFile(qpath(png)).toString()}));
    QVERIFY(!fs::exists(dir / "data"));
}

void ServicesTest::anActionRunsThroughTheModelAndQueue() {
    TempDir dir;
    const auto source = corpus("001-trivial/minimal-document.pdf");
    QVERIFY(fs::exists(source));
    auto settings = settingsIn(dir);
    OutputRule rule;
    rule.location = OutputRule::Location::custom;
    rule.customFolder = (dir / "out").string();
    settings->setOutputRule(rule);
    QuilletApp app(*settings, dir.path(), realWorker());
    int raised = 0;
    ServicesProvider services(&app.model(), [&raised] { ++raised; });

    // Not one of ours, or nothing to work on: nothing happens.
    QVERIFY(!services.activateAction("rotate", {QStringList{qpath(source)}}));
    QVERIFY(services.activateAction("clean", {QStringLiteral("just some text")}));
    QVERIFY(app.queue().records().empty());
    QCOMPARE(raised, 0);

    const QString uri = QUrl::fromLocalFile(qpath(source)).toString();
    // Clean follows the output rule (converted pages would go beside the corpus file).
    QVERIFY(services.activateAction("clean", {QStringList{uri}}));
    QCOMPARE(app.model().files(), QStringList{qpath(source)});
    QCOMPARE(raised, 1);
    QCOMPARE(app.queue().records().size(), 1u);
    const auto& record = app.queue().records()[0];
    QVERIFY(record.operation == PDFOperationKind::clean);
    QVERIFY(record.parametersData && record.parametersData->find("privacy") != std::string::npos);
    QTRY_VERIFY_WITH_TIMEOUT(app.queue().records()[0].state == TaskState::completed ||
                                 app.queue().records()[0].state == TaskState::failed,
                             60000);
    const auto& done = app.queue().records()[0];
    QVERIFY2(done.state == TaskState::completed, done.error.value_or("").c_str());
    QVERIFY(!done.outputURLs.empty());
    for (const std::string& output : done.outputURLs) {
        const QString path = QString::fromStdString(output);
        QVERIFY2(path.endsWith(".pdf") && path.startsWith(qpath(dir / "out")), qPrintable(path));
        QVERIFY(QFile::exists(path));
    }

    // A launcher's action carries no files: the user chooses them; a cancelled choice runs
    // nothing.
    QList<QUrl> chosen;
    services.chooseFiles = [&chosen] { return chosen; };
    QVERIFY(services.activateAction("compress", {}));
    QCOMPARE(app.queue().records().size(), 1u);
    chosen = {QUrl::fromLocalFile(qpath(source))};
    QVERIFY(services.activateAction("compress", {}));
    QCOMPARE(app.queue().records().size(), 2u);
    QVERIFY(app.queue().records()[1].operation == PDFOperationKind::compress);
    app.queue().cancel(app.queue().records()[1].id);
}

static RegisterSuite registered([] { return std::make_unique<ServicesTest>(); });

#include "ServicesTest.moc"
