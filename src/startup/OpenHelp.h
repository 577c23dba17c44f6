#pragma once

#include "platform/HelpViewer.h"

namespace nv {

// F1 in any window: opens App.HelpFile in the viewer, or tells the user that it cannot be found
// or read; nothing before the start has named the file.
void subOpenHelp(HelpViewer& viewer);

} // namespace nv
