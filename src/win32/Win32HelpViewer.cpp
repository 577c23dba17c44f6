#include "win32/Win32HelpViewer.h"

#include "platform/win32/Win32Text.h"

#include <windows.h>

#include <htmlhelp.h>

namespace nv {

Win32HelpViewer::~Win32HelpViewer() {
    // The viewer's windows belong to this program; they go with it.
    HtmlHelpW(nullptr, nullptr, HH_CLOSE_ALL, 0);
}

bool Win32HelpViewer::show(const std::string& nativePath) {
    const std::wstring file = win32::wideFromUtf8(nativePath);
    // The file's own start page, as the help on every other platform opens.
    return HtmlHelpW(GetActiveWindow(), file.c_str(), HH_DISPLAY_TOPIC, 0) != nullptr;
}

} // namespace nv
