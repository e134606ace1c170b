#include "app/EngineTexts.hpp"

#include <QCoreApplication>
#include <QRegularExpression>

#include <functional>
#include <vector>

namespace quillet::EngineTexts {
namespace {

// Named and shaped as Qt's own, so that the translation tools collect the texts below; the
// context is the one they give them.
QString tr(const char* text, const char* disambiguation = nullptr, int count = -1) {
    return QCoreApplication::translate("quillet::EngineTexts", text, disambiguation, count);
}

struct Form {
    QRegularExpression pattern;
    std::function<QString(const QRegularExpressionMatch&)> translate;
};

int number(const QRegularExpressionMatch& match, int group) {
    return match.captured(group).toInt();
}

/// Every text the engines, the task runner and the worker give the queue, by form. Anchored:
/// a form matches a whole text or note, never a part of one.
const std::vector<Form>& forms() {
    static const std::vector<Form> list = [] {
        std::vector<Form> f;
        const auto add = [&f](const char* pattern,
                              std::function<QString(const QRegularExpressionMatch&)> translate) {
            f.push_back({QRegularExpression(QStringLiteral("^") + QString::fromUtf8(pattern) +
                                            QStringLiteral("$")),
                         std::move(translate)});
        };
        // Notes.
        add(R"((\d+) pages combined)",
            [](const auto& m) { return tr("%n pages combined", nullptr, number(m, 1)); });
        add(R"((\d+) images)",
            [](const auto& m) { return tr("%n images", nullptr, number(m, 1)); });
        add(R"((\d+) pages skipped)",
            [](const auto& m) { return tr("%n pages skipped", nullptr, number(m, 1)); });
        add(R"((\d+) of (\d+) pages made searchable)", [](const auto& m) {
            return tr("%1 of %2 pages made searchable").arg(m.captured(1), m.captured(2));
        });
        add(R"(This PDF is already optimized\.)",
            [](const auto&) { return tr("This PDF is already optimized."); });
        add(R"(Already under target — optimized losslessly\.)",
            [](const auto&) { return tr("Already under target — optimized losslessly."); });
        add(R"(Already under (.+)\.)",
            [](const auto& m) { return tr("Already under %1.").arg(m.captured(1)); });
        add(R"(Best effort: (.+) — this PDF cannot reach (.+) without destroying quality\.)",
            [](const auto& m) {
                return tr("Best effort: %1 — this PDF cannot reach %2 without destroying quality.")
                    .arg(m.captured(1), m.captured(2));
            });
        // Errors.
        add(R"(File not found: (.+))",
            [](const auto& m) { return tr("File not found: %1").arg(m.captured(1)); });
        add(R"(Could not open ([^:]+)\.)",
            [](const auto& m) { return tr("Could not open %1.").arg(m.captured(1)); });
        add(R"(Could not open ([^:]+): (.+)\.)", [](const auto& m) {
            // A translation may leave the quoted reason out.
            const QString text = tr("Could not open %1: %2.");
            return text.contains(QLatin1String("%2")) ? text.arg(m.captured(1), m.captured(2))
                                                      : text.arg(m.captured(1));
        });
        add(R"(Writing the PDF failed: (.+))",
            [](const auto& m) { return tr("Writing the PDF failed: %1").arg(m.captured(1)); });
        add(R"(Could not safely process this PDF\. (.*))", [](const auto& m) {
            return (tr("Could not safely process this PDF.") + QLatin1Char(' ') +
                    translated(m.captured(1)))
                .trimmed();
        });
        add(R"(This PDF cannot be compressed under (.+) without unacceptable quality loss\.)",
            [](const auto& m) {
                return tr("This PDF cannot be compressed under %1 without unacceptable quality "
                          "loss.")
                    .arg(m.captured(1));
            });
        add(R"(Incorrect password\.)", [](const auto&) { return tr("Incorrect password."); });
        add(R"(The document has no pages\.)",
            [](const auto&) { return tr("The document has no pages."); });
        add(R"(No input files\.)", [](const auto&) { return tr("No input files."); });
        add(R"(Unsupported image: (.+))",
            [](const auto& m) { return tr("Unsupported image: %1").arg(m.captured(1)); });
        add(R"re(No pages matched "(.*)"\.)re",
            [](const auto& m) { return tr("No pages matched \"%1\".").arg(m.captured(1)); });
        add(R"(Set a maximum size per output file\.)",
            [](const auto&) { return tr("Set a maximum size per output file."); });
        add(R"(Enter an open password\.)",
            [](const auto&) { return tr("Enter an open password."); });
        add(R"(The file changed while it was being split\.)",
            [](const auto&) { return tr("The file changed while it was being split."); });
        add(R"((.+) is not processed: its streams expand to more than (\d+) MB when decoded\.)",
            [](const auto& m) {
                return tr("%1 is not processed: its streams expand to more than %2 MB when "
                          "decoded.")
                    .arg(m.captured(1), m.captured(2));
            });
        add(R"((.+): Page (\d+) takes too long to draw)", [](const auto& m) {
            return tr("%1: Page %2 takes too long to draw").arg(m.captured(1), m.captured(2));
        });
        add(R"(The operation was cancelled\.)",
            [](const auto&) { return tr("The operation was cancelled."); });
        add(R"(The job stopped unexpectedly: its worker process crashed\.(.*))", [](const auto& m) {
            return tr("The job stopped unexpectedly: its worker process crashed.") + m.captured(1);
        });
        add(R"(The job stopped unexpectedly: its worker process exited with status (\d+) without a result\.(.*))",
            [](const auto& m) {
                return tr("The job stopped unexpectedly: its worker process exited with status %1 "
                          "without a result.")
                           .arg(m.captured(1)) +
                       m.captured(2);
            });
        return f;
    }();
    return list;
}

QString translatedOne(const QString& text) {
    for (const auto& form : forms()) {
        if (const auto match = form.pattern.match(text); match.hasMatch()) {
            return form.translate(match);
        }
    }
    return text;
}

} // namespace

QString translated(const QString& text) {
    static const QString separator = QStringLiteral(" · ");
    QStringList parts = text.split(separator);
    for (auto& part : parts) {
        part = translatedOne(part);
    }
    return parts.join(separator);
}

QString translated(const std::string& text) {
    return translated(QString::fromStdString(text));
}

} // namespace quillet::EngineTexts
