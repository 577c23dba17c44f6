#pragma once

#include "startup/SingleStart.h"

#include <string>
#include <windows.h>

namespace nv {

// One program per settings file, over a named mutex. The first program's main window carries a
// mark of the same settings file, so a later start finds it among other programs' windows.
class Win32SingleInstance : public SingleStart {
public:
    explicit Win32SingleInstance(const std::string& settingsFile);
    ~Win32SingleInstance() override {
        if (mutex_)
            CloseHandle(mutex_);
    }
    Win32SingleInstance(const Win32SingleInstance&) = delete;
    Win32SingleInstance& operator=(const Win32SingleInstance&) = delete;

    bool first() const override { return first_; }
    bool askFirstToComeForward() override;

    // Marks the first program's main window as the one a later start brings forward.
    void markMainWindow(HWND window) const {
        SetPropW(window, key_.c_str(), reinterpret_cast<HANDLE>(1));
    }

private:
    std::wstring key_;
    HANDLE mutex_ = nullptr;
    bool first_ = false;
};

} // namespace nv
