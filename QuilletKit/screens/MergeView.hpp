// The merge screen: the list built across drops, in the order of the merged document.
#pragma once

#include "screens/ScreenContext.hpp"

#include <QWidget>

namespace quillet {

class MergeView : public QWidget {
    Q_OBJECT

  public:
    explicit MergeView(const ScreenContext& context, QWidget* parent = nullptr);

  private:
    ScreenContext context_;
};

} // namespace quillet
