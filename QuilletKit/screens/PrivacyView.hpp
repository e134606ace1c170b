// The privacy screen: remove metadata, protect with a password, remove a password.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

namespace quillet {

class PrivacyView : public QWidget {
    Q_OBJECT

  public:
    explicit PrivacyView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    ScreenContext context_;
};

} // namespace quillet
