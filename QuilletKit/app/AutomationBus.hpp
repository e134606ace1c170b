// The automation actions on the session bus: the interface org.quillet.Quillet.Intents, exported
// beside org.freedesktop.Application on the application's object.
//
//   CompressPDF(as files, s quality, i targetSizeMB) -> as
//   MergePDFs(as files) -> as
//   SplitPDF(s file, i everyN) -> as
//   ConvertPDFToImages(s file, i dpi) -> as
//   CleanPDF(as files) -> as
//   MakePDFSearchable(as files, s languages) -> as
//   RedactPDF(as files, as patterns) -> as   (words, "regex:EXPRESSION" or "preset:NAME")
//   StampPDF(as files, s marks) -> as         (a JSON array of marks, as a stamp job holds them)
//
// Files are absolute paths; the answer is the absolute paths of the produced files. Each call is
// queued on the IntentRunner and answered when its action ends (a delayed reply), so a caller
// needs a call timeout long enough for its largest file. Any failure, including a relative path
// or a quality that is not one of the raw values, answers the D-Bus error
// org.quillet.Quillet.Error.Failed whose message is the error's text.
#pragma once

#include "app/IntentRunner.hpp"

#include <QObject>
#include <QString>

#include <optional>

namespace quillet {

class AutomationBus : public QObject {
    Q_OBJECT

  public:
    static constexpr const char* interfaceName = "org.quillet.Quillet.Intents";
    static constexpr const char* errorName = "org.quillet.Quillet.Error.Failed";

    /// Adds the interface to `exported`, the object registered (or about to be registered) at
    /// the application's path with its adaptors exported; calls run on `runner`, which must
    /// outlive `exported`.
    AutomationBus(QObject* exported, IntentRunner& runner);

    /// The tier a quality text names: "" is absent; throws std::invalid_argument naming the
    /// accepted values for any other text that is not a raw value.
    static std::optional<CompressionQualityTier> quality(const QString& text);
    /// The paths as given; throws std::invalid_argument for a relative one.
    static std::vector<std::filesystem::path> absolutePaths(const QStringList& paths);

    IntentRunner& runner() { return runner_; }

  private:
    IntentRunner& runner_;
};

} // namespace quillet
