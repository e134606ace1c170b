#include "app/AutomationBus.hpp"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>

#include <stdexcept>

namespace quillet {
namespace fs = std::filesystem;

namespace {

QStringList paths(const std::vector<fs::path>& files) {
    QStringList list;
    for (const fs::path& file : files) {
        list << QString::fromStdString(file.string());
    }
    return list;
}

} // namespace

/// The interface itself: every method takes its arguments, answers later.
class IntentsAdaptor : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.quillet.Quillet.Intents")
    // clang-format off
    Q_CLASSINFO("D-Bus Introspection",
        "  <interface name=\"org.quillet.Quillet.Intents\">\n"
        "    <!-- Compress PDF: \"Compress FILES at QUALITY\". Answers the compressed copies. -->\n"
        "    <method name=\"CompressPDF\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Compress PDF: Compress files at quality\"/>\n"
        "      <!-- PDFs: absolute paths -->\n"
        "      <arg name=\"files\" type=\"as\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"PDFs (absolute paths)\"/>\n"
        "      </arg>\n"
        "      <!-- Quality: highQuality, balanced, smallest or lossless; \"\" for balanced -->\n"
        "      <arg name=\"quality\" type=\"s\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"Quality: highQuality, balanced, smallest or lossless; empty for balanced\"/>\n"
        "      </arg>\n"
        "      <!-- Target size in MB (of 1,048,576 bytes); 0 for none -->\n"
        "      <arg name=\"targetSizeMB\" type=\"i\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"Target size in MB (1,048,576 bytes); below 1 for none\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <!-- Merge PDFs: \"Merge FILES\". Answers the merged PDF. -->\n"
        "    <method name=\"MergePDFs\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Merge PDFs: Merge files\"/>\n"
        "      <arg name=\"files\" type=\"as\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"Files (absolute paths), in order\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <!-- Split PDF: \"Split FILE every EVERYN pages\". Answers the parts. -->\n"
        "    <method name=\"SplitPDF\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Split PDF: Split file every everyN pages\"/>\n"
        "      <arg name=\"file\" type=\"s\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"PDF (absolute path)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"everyN\" type=\"i\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"Every N pages (usually 1)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <!-- Convert PDF to Images: \"Convert FILE to PNG at DPI DPI\". Answers one PNG per page. -->\n"
        "    <method name=\"ConvertPDFToImages\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Convert PDF to Images: Convert file to PNG at dpi DPI\"/>\n"
        "      <arg name=\"file\" type=\"s\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"PDF (absolute path)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"dpi\" type=\"i\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"DPI (usually 150)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <!-- Remove PDF Metadata: \"Remove metadata from FILES\". Answers the cleaned copies. -->\n"
        "    <method name=\"CleanPDF\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Remove PDF Metadata: Remove metadata from files\"/>\n"
        "      <arg name=\"files\" type=\"as\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"PDFs (absolute paths)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <!-- Make PDF Searchable: \"Make FILES searchable in LANGUAGES\". Answers the searchable copies. -->\n"
        "    <method name=\"MakePDFSearchable\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Make PDF Searchable: Make files searchable in languages\"/>\n"
        "      <arg name=\"files\" type=\"as\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"PDFs (absolute paths)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"languages\" type=\"s\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"Languages, e.g. eng or eng+chi_sim (empty: eng)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <!-- Redact PDF: \"Redact PATTERNS in FILES\". Answers the redacted copies. -->\n"
        "    <method name=\"RedactPDF\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Redact PDF: Redact patterns in files\"/>\n"
        "      <arg name=\"files\" type=\"as\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"PDFs (absolute paths)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"patterns\" type=\"as\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"Words, regex:EXPRESSION or preset:email|phone|iban|card|date\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "    <!-- Stamp PDF: \"Stamp MARKS on FILES\". Answers the stamped copies. -->\n"
        "    <method name=\"StampPDF\">\n"
        "      <annotation name=\"org.freedesktop.DBus.Description\" value=\"Stamp PDF: Stamp marks on files\"/>\n"
        "      <arg name=\"files\" type=\"as\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"PDFs (absolute paths)\"/>\n"
        "      </arg>\n"
        "      <arg name=\"marks\" type=\"s\" direction=\"in\">\n"
        "        <annotation name=\"org.freedesktop.DBus.Description\" value=\"A JSON array of marks: [{&quot;kind&quot;:&quot;pageNumber&quot;,&quot;format&quot;:&quot;Page {n} of {total}&quot;}]\"/>\n"
        "      </arg>\n"
        "      <arg name=\"outputs\" type=\"as\" direction=\"out\"/>\n"
        "    </method>\n"
        "  </interface>\n")
    // clang-format on

  public:
    IntentsAdaptor(QObject* exported, IntentRunner& runner)
        : QDBusAbstractAdaptor(exported), runner_(runner) {}

  public slots:
    QStringList CompressPDF(const QStringList& files, const QString& quality, int targetSizeMB,
                            const QDBusMessage& message) {
        answer(message, [&] {
            return Intent::compress(AutomationBus::absolutePaths(files),
                                    AutomationBus::quality(quality), targetSizeMB);
        });
        return {};
    }
    QStringList MergePDFs(const QStringList& files, const QDBusMessage& message) {
        answer(message, [&] { return Intent::merge(AutomationBus::absolutePaths(files)); });
        return {};
    }
    QStringList SplitPDF(const QString& file, int everyN, const QDBusMessage& message) {
        answer(message,
               [&] { return Intent::split(AutomationBus::absolutePaths({file}).front(), everyN); });
        return {};
    }
    QStringList ConvertPDFToImages(const QString& file, int dpi, const QDBusMessage& message) {
        answer(message,
               [&] { return Intent::convert(AutomationBus::absolutePaths({file}).front(), dpi); });
        return {};
    }
    QStringList CleanPDF(const QStringList& files, const QDBusMessage& message) {
        answer(message, [&] { return Intent::clean(AutomationBus::absolutePaths(files)); });
        return {};
    }
    QStringList MakePDFSearchable(const QStringList& files, const QString& languages,
                                  const QDBusMessage& message) {
        answer(message, [&] {
            return Intent::makeSearchable(AutomationBus::absolutePaths(files),
                                          languages.toStdString());
        });
        return {};
    }

    QStringList RedactPDF(const QStringList& files, const QStringList& patterns,
                          const QDBusMessage& message) {
        answer(message, [&] {
            std::vector<std::string> given;
            for (const auto& pattern : patterns) {
                given.push_back(pattern.toStdString());
            }
            return Intent::redact(AutomationBus::absolutePaths(files), given);
        });
        return {};
    }

    QStringList StampPDF(const QStringList& files, const QString& marks,
                         const QDBusMessage& message) {
        answer(message, [&] {
            return Intent::stamp(AutomationBus::absolutePaths(files), marks.toStdString());
        });
        return {};
    }

  private:
    /// Queues the intent `make` builds and answers the call when it ends; a bad argument is
    /// answered at once.
    template <typename Make> void answer(const QDBusMessage& message, Make make) {
        message.setDelayedReply(true);
        const QString error = QString::fromLatin1(AutomationBus::errorName);
        try {
            runner_.submit(make(), [message, error](const std::vector<fs::path>& outputs,
                                                    std::exception_ptr failure) {
                QDBusMessage reply = message.createReply(QVariant(paths(outputs)));
                if (failure) {
                    try {
                        std::rethrow_exception(failure);
                    } catch (const std::exception& e) {
                        reply = message.createErrorReply(error, QString::fromStdString(e.what()));
                    } catch (...) {
                        reply =
                            message.createErrorReply(error, AutomationBus::tr("Unknown error."));
                    }
                }
                QDBusConnection::sessionBus().send(reply);
            });
        } catch (const std::exception& e) {
            QDBusConnection::sessionBus().send(
                message.createErrorReply(error, QString::fromStdString(e.what())));
        }
    }

    IntentRunner& runner_;
};

AutomationBus::AutomationBus(QObject* exported, IntentRunner& runner) : runner_(runner) {
    new IntentsAdaptor(exported, runner);
}

std::optional<CompressionQualityTier> AutomationBus::quality(const QString& text) {
    if (text.isEmpty()) {
        return std::nullopt;
    }
    if (auto tier = fromRawValue<CompressionQualityTier>(text.toStdString())) {
        return tier;
    }
    throw std::invalid_argument(tr("Unknown quality \"%1\"; use highQuality, balanced, smallest "
                                   "or lossless.")
                                    .arg(text)
                                    .toStdString());
}

std::vector<fs::path> AutomationBus::absolutePaths(const QStringList& list) {
    std::vector<fs::path> files;
    for (const QString& path : list) {
        fs::path file(path.toStdString());
        if (!file.is_absolute()) {
            throw std::invalid_argument(
                tr("\"%1\" is not an absolute path.").arg(path).toStdString());
        }
        files.push_back(std::move(file));
    }
    return files;
}

} // namespace quillet

#include "AutomationBus.moc"
