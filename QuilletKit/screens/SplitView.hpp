// The split screen: one PDF and how to cut it (every page, page ranges, every N pages, extracted
// pages, or parts of a size). Page texts are read with the engine's own grammar as they are
// typed, and the number of files a split makes is said before it runs (once the document's page
// count is known from its analysis).
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

#include <optional>

class QButtonGroup;
class QComboBox;
class QDoubleSpinBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace quillet {

class ActionBar;

class SplitView : public QWidget {
    Q_OBJECT

  public:
    explicit SplitView(const ScreenContext& context, QWidget* parent = nullptr);

    /// The PDF the screen splits: the first loaded PDF, if any.
    std::optional<QString> source() const;
    void selectMode(SplitMode mode);
    SplitMode mode() const;
    OperationParameters parameters() const;
    /// Runs the split, or says in the action bar why it cannot.
    void runSplit();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* buildModes();
    void refresh();
    /// Why the current choice cannot run; empty when it can.
    QString problem() const;
    int pageCount() const;

    ScreenContext context_;
    QLabel* file_ = nullptr;
    QButtonGroup* modes_ = nullptr;
    QLineEdit* ranges_ = nullptr;
    QSpinBox* everyN_ = nullptr;
    QLineEdit* extract_ = nullptr;
    QDoubleSpinBox* maxSize_ = nullptr;
    QComboBox* sizeUnit_ = nullptr;
    ActionBar* bar_ = nullptr;
};

} // namespace quillet
