// The organize screen: the pages of one PDF as a grid of thumbnails to reorder, rotate, delete, duplicate, extract and insert.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

namespace quillet {

class OrganizeView : public QWidget {
    Q_OBJECT

  public:
    explicit OrganizeView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    ScreenContext context_;
};

} // namespace quillet
