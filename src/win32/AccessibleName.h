#pragma once

#include <string>
#include <windows.h>

namespace nv::win32 {

// The name a screen reader speaks for a control that has no label just before it.
void setAccessibleName(HWND control, const std::string& name);

} // namespace nv::win32
