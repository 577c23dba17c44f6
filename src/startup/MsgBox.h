#pragma once

#include "platform/MessageBoxes.h"

#include <string>

namespace nv {

// Shows a modal box through the platform; a box without a title of its own bears the
// application's title.
Answer MsgBox(const std::string& prompt, Buttons buttons = Buttons::OK, Icon icon = Icon::None,
              DefaultButton defaultButton = DefaultButton::First, const std::string& title = "");

// Inside a catch block, for a failure no handler caught: tells the user what it was, so that a
// window's event loop can go on.
void tellUncaughtFailure();

} // namespace nv
