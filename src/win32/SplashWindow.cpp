#include "win32/SplashWindow.h"

#include "win32/ResourceIds.h"
#include "win32/SansFont.h"
#include "win32/Win32Frame.h"
#include "win32/WindowClasses.h"

namespace nv::win32 {

namespace {

constexpr Rgb kBackground{224, 224, 224};

frmSplash::Controls layOut(Win32Window& window, Adapters& a) {
    auto* frame = a.make<Win32Frame>(window.hwnd(), "", TwipsRect{240, 60, 7545, 5235},
                                     Win32Frame::Look::Box, sansFont(8.25), kBackground);
    HWND inside = frame->hwnd();
    a.picture(inside, NV_IDB_SPLASH_BANNER, {150, 225, 7230, 2250});
    a.picture(inside, NV_IDB_SPLASH_SQUARE, {210, 3705, 1575, 1350});
    auto caption = [&](Rgb colour, double points, const TwipsRect& place) {
        auto* label = a.label(inside, "", place, sansFont(points, true));
        label->setForeColor(colour);
        return label;
    };
    auto* copyright = caption({0, 0, 255}, 9.75, {180, 2610, 2835, 255});
    auto* productName = caption({255, 0, 0}, 26.25, {1980, 3675, 3735, 615});
    auto* version = caption({0, 0, 0}, 12, {3120, 4920, 885, 285});
    // Both take the size of what the form writes in them.
    productName->setAutoSize(true);
    version->setAutoSize(true);
    auto* timer = a.make<Win32Timer>(window.hwnd(), 1);
    window.timers = {timer};
    return {&window, frame, copyright, productName, version, timer};
}

} // namespace

SplashWindow::SplashWindow()
    : window_(createTopLevel(kSplashWindowClass, "Norvale Backup", WS_POPUP | WS_CLIPCHILDREN,
                             WS_EX_DLGMODALFRAME | WS_EX_TOPMOST | WS_EX_TOOLWINDOW, 7950, 5490),
              kBackground),
      form_(layOut(window_, adapters_)) {
    window_.centreAtFirstShow = true;
}

void SplashWindow::show() {
    window_.show();
    SetForegroundWindow(window_.hwnd());
    SetFocus(window_.hwnd());
}

} // namespace nv::win32
