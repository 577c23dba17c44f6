#pragma once

#include "platform/HelpViewer.h"
#include "platform/win32/Win32Text.h"

#include <windows.h>

#include <htmlhelp.h>

namespace nv {

// The help file in the system's help viewer.
class Win32HelpViewer : public HelpViewer {
public:
    // The viewer's windows belong to this program; they go with it.
    ~Win32HelpViewer() override { HtmlHelpW(nullptr, nullptr, HH_CLOSE_ALL, 0); }
    // The file's own start page, as the help on every other platform opens.
    bool show(const std::string& nativePath) override {
        return HtmlHelpW(GetActiveWindow(), win32::wideFromUtf8(nativePath).c_str(),
                         HH_DISPLAY_TOPIC, 0) != nullptr;
    }
};

} // namespace nv
