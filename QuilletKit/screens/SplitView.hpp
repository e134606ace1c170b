// The split screen: one PDF and how to cut it.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

namespace quillet {

class SplitView : public QWidget {
    Q_OBJECT

  public:
    explicit SplitView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    ScreenContext context_;
};

} // namespace quillet
