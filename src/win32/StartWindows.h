#pragma once

#include "startup/Main.h"
#include "win32/MainWindow.h"
#include "win32/SplashWindow.h"

#include <functional>
#include <memory>

namespace nv::win32 {

// The windows Main brings up. A window that has closed is let go of between messages, never
// inside its own form's code; the program ends when both are gone.
class Win32StartWindows : public StartWindows {
public:
    explicit Win32StartWindows(std::function<void(HWND)> mainWindowMade)
        : mainWindowMade_(std::move(mainWindowMade)) {}

    void loadMainWindow() override;
    void showMainWindow() override;
    void loadSplash() override;
    void showSplash() override;

    // Lets go of the windows that have closed; false when none is left.
    bool collect();

private:
    std::function<void(HWND)> mainWindowMade_;
    std::unique_ptr<MainWindow> main_;
    std::unique_ptr<SplashWindow> splash_;
    bool mainGone_ = false, splashGone_ = false;
};

} // namespace nv::win32
