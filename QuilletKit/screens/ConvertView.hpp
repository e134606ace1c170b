// The convert screen: PDF pages to images, or images to a PDF.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

namespace quillet {

class ConvertView : public QWidget {
    Q_OBJECT

  public:
    explicit ConvertView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    ScreenContext context_;
};

} // namespace quillet
