// The batch screen: one action over every loaded file, one job each.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

namespace quillet {

class BatchView : public QWidget {
    Q_OBJECT

  public:
    explicit BatchView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    ScreenContext context_;
};

} // namespace quillet
