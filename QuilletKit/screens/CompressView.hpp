// The compress screen: the loaded PDFs with their size and the size predicted for the chosen
// option; the four quality tiers or a target size; the user's presets; and, when a job started
// here completes, the before/after comparison of its first file.
#pragma once

#include "screens/ScreenContext.hpp"
#include "app/SlicedLoop.hpp"

#include <QWidget>

#include <optional>
#include <string>

class QAbstractButton;
class QButtonGroup;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QPushButton;
class QTabWidget;
class QTreeWidget;

namespace quillet {

class BeforeAfterView;

class CompressView : public QWidget {
    Q_OBJECT

  public:
    explicit CompressView(const ScreenContext& context, QWidget* parent = nullptr);

    /// The parameters the screen would run now: a tier, or a target size in bytes.
    OperationParameters parameters() const;
    std::optional<std::int64_t> targetBytes() const;
    void selectTier(CompressionQualityTier tier);
    void setTarget(std::int64_t bytes);
    BeforeAfterView& comparison() const { return *comparison_; }
    /// Shows the before/after tab comparing `original` with `result`.
    void showComparison(const QString& original, const QString& result);

  private:
    QWidget* buildOptions();
    QWidget* buildPresets();
    void refreshFiles();
    void refreshPresets();
    void updateActions();
    void runCompression();
    void queueChanged();
    QStringList loadedPDFs() const;

    ScreenContext context_;
    QTabWidget* tabs_ = nullptr;
    QTreeWidget* files_ = nullptr;
    QButtonGroup* choice_ = nullptr;
    QDoubleSpinBox* targetSize_ = nullptr;
    QComboBox* targetUnit_ = nullptr;
    QComboBox* presets_ = nullptr;
    QPushButton* applyPreset_ = nullptr;
    QPushButton* deletePreset_ = nullptr;
    QLabel* message_ = nullptr;
    QPushButton* run_ = nullptr;
    BeforeAfterView* comparison_ = nullptr;
    std::optional<std::int64_t> exactTarget_;
    std::optional<std::string> watchedJob_; ///< the last job started here, until it ends
    SlicedLoop filling_;
};

} // namespace quillet
