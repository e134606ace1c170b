// The batch screen: one of nine fixed actions over every loaded file (folders dropped here are
// expanded into the files they hold). "Run" turns the choice into one job per file, in list
// order, each with the output rule of that moment, and submits them to the queue in one call so
// they run one after another; each file's row then follows the state of its job.
#pragma once

#include "screens/ScreenContext.hpp"
#include "app/SlicedLoop.hpp"

#include <QHash>
#include <QSet>
#include <QTreeWidgetItem>
#include <QWidget>

#include <memory>
#include <string>
#include <utility>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTreeWidget;

namespace quillet {

class ActionBar;

class BatchView : public QWidget {
    Q_OBJECT

  public:
    explicit BatchView(const ScreenContext& context, QWidget* parent = nullptr);

    /// In the order the picker lists them; the raw value of each is its name.
    enum class BatchAction {
        compressBalanced,
        compressSmallest,
        target10MB,
        target5MB,
        png,
        jpeg,
        cleanPrivacy,
        rotate90,
        removePassword,
        makeSearchable,
        redact,
        pageNumbers,
        watermark,
    };
    static constexpr int actionCount = 13;

    /// The label the picker shows for `action`, translated.
    static QString label(BatchAction action);
    /// The operation and parameters of the jobs `action` submits (`password` for removePassword;
    /// redact takes its words and presets from `redaction`).
    static PDFOperationKind operation(BatchAction action);
    static OperationParameters parameters(BatchAction action, const std::string& password);
    /// Redaction by the words given (separated by commas) and the presets ticked: no drawn areas.
    static OperationParameters::Redact redaction(const QString& words, const QStringList& presets);
    /// A diagonal watermark of `text`: large, gray, a third opaque, in the middle of each page.
    static OperationParameters::Stamp watermark(const QString& text);

    BatchAction action() const;
    void setAction(BatchAction action);
    /// Submits one job per loaded file; nothing without files, for removePassword without a
    /// password, for redact without a word or a preset, or for watermark without a text.
    void runBatch();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    void rebuildRows();
    void refreshStates();
    void refreshAnalysis(const QString& path);
    void updateActions();

    ScreenContext context_;
    QComboBox* actions_ = nullptr;
    QWidget* passwordRow_ = nullptr;
    QLineEdit* password_ = nullptr;
    QWidget* redactRow_ = nullptr;
    QLineEdit* redactWords_ = nullptr;
    QWidget* watermarkRow_ = nullptr;
    QLineEdit* watermarkText_ = nullptr;
    std::vector<std::pair<QString, QCheckBox*>> redactPresets_; ///< preset name, its box
    QTreeWidget* rows_ = nullptr;
    QHash<QString, QTreeWidgetItem*> itemByPath_;
    /// Rows made by `building_` and not yet in the list: they go in together, so that the list
    /// lays itself out once rather than once per slice.
    std::vector<std::unique_ptr<QTreeWidgetItem>> building_rows_;
    SlicedLoop building_;
    QSet<QString> stated_; ///< files whose row shows a job's state
    QLabel* done_ = nullptr;
    QPushButton* clear_ = nullptr;
    ActionBar* bar_ = nullptr;
    QHash<QString, std::string> jobs_; ///< file → the last job submitted for it here
};

} // namespace quillet
