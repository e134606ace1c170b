// The screen of each section, made for the window.
#pragma once

#include "screens/ScreenContext.hpp"

class QWidget;

namespace quillet {

QWidget* makeSectionBody(AppModel::Section section, const ScreenContext& context);

} // namespace quillet
