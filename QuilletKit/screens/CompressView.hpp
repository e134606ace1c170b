// The compress screen: the loaded PDFs, the quality tier or a target size, presets, and after a
// job the before/after comparison.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

class QComboBox;
class QPushButton;

namespace quillet {

class CompressView : public QWidget {
    Q_OBJECT

  public:
    explicit CompressView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    void updateActions();

    ScreenContext context_;
    QComboBox* tier_ = nullptr;
    QPushButton* run_ = nullptr;
};

} // namespace quillet
