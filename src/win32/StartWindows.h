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

    void loadMainWindow() override {
        main_ = std::make_unique<MainWindow>();
        mainGone_ = false;
        main_->window().gone = [this] { mainGone_ = true; };
        mainWindowMade_(main_->window().hwnd());
        main_->form().Form_Load();
    }
    void showMainWindow() override {
        if (main_)
            main_->window().show();
    }
    void loadSplash() override {
        splash_ = std::make_unique<SplashWindow>();
        splashGone_ = false;
        splash_->window().gone = [this] { splashGone_ = true; };
        splash_->form().Form_Load();
    }
    void showSplash() override {
        if (splash_)
            splash_->show();
    }

    // Lets go of the windows that have closed; false when none is left.
    bool collect() {
        if (mainGone_)
            main_.reset();
        if (splashGone_)
            splash_.reset();
        return main_ || splash_;
    }

private:
    std::function<void(HWND)> mainWindowMade_;
    std::unique_ptr<MainWindow> main_;
    std::unique_ptr<SplashWindow> splash_;
    bool mainGone_ = false, splashGone_ = false;
};

} // namespace nv::win32
