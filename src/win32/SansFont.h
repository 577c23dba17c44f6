#pragma once

#include <windows.h>

namespace nv::win32 {

// The program's sans-serif face at a size in points, sized for the screen; kept for the
// program's lifetime.
HFONT sansFont(double points, bool bold = false, bool underline = false);

} // namespace nv::win32
