// Starting a fresh instance of the application and quitting this one, so a new language applies.
#pragma once

#include <functional>

namespace quillet::AppRelaunch {

/// Runs `beforeStart` (the caller gives up its bus name there, so the new instance does not hand
/// itself over to this one), starts the program again without arguments, then asks the
/// application to quit once control is back in the event loop. Answers whether the new instance
/// started; this one quits either way.
bool relaunch(const std::function<void()>& beforeStart);

} // namespace quillet::AppRelaunch
