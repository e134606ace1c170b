// The home screen: one card per loaded file with its analysis and the actions it recommends.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

namespace quillet {

class HomeView : public QWidget {
    Q_OBJECT

  public:
    explicit HomeView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    ScreenContext context_;
};

} // namespace quillet
