#include "win32/StartWindows.h"

namespace nv::win32 {

void Win32StartWindows::loadMainWindow() {
    main_ = std::make_unique<MainWindow>();
    mainGone_ = false;
    main_->window().gone = [this] { mainGone_ = true; };
    mainWindowMade_(main_->window().hwnd());
    main_->form().Form_Load();
}

void Win32StartWindows::showMainWindow() {
    if (main_)
        main_->window().show();
}

void Win32StartWindows::loadSplash() {
    splash_ = std::make_unique<SplashWindow>();
    splashGone_ = false;
    splash_->window().gone = [this] { splashGone_ = true; };
    splash_->form().Form_Load();
}

void Win32StartWindows::showSplash() {
    if (splash_)
        splash_->show();
}

bool Win32StartWindows::collect() {
    if (mainGone_)
        main_.reset();
    if (splashGone_)
        splash_.reset();
    return main_ || splash_;
}

} // namespace nv::win32
