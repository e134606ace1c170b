// Light and Dark force a palette on the Fusion style; System gives the desktop's own style and
// palette back, as they were when the application started.
#pragma once

#include "app/AppSettings.hpp"

namespace quillet::Appearance {

/// Applies `appearance` to the whole application. Call on the main thread, after the
/// QApplication exists.
void apply(AppSettings::Appearance appearance);

} // namespace quillet::Appearance
