#pragma once

#include "win32/Win32Control.h"
#include "win32/Win32TimerAndMenu.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace nv::win32 {

// A top-level window of the face: its place on the screen, its height with the frame, the width
// of its client area. The face that made it fills in the members below.
class Win32Window : public Win32Control<Window> {
public:
    explicit Win32Window(HWND window, std::optional<Rgb> backdrop = {});
    ~Win32Window() override;

    std::string caption() const override { return windowText(window_); }
    void setCaption(const std::string& caption) override;
    int innerWidth() const override;
    WindowState state() const override;
    void show() override;
    void showModal() override;
    void close() override;
    void repaint() override;
    bool handle(UINT message, WPARAM wParam, LPARAM lParam, LRESULT& result) override;

    std::vector<Win32Timer*> timers;
    std::vector<Win32MenuItem*> menuItems;
    // Paints under the controls.
    std::function<void(HDC)> paint;
    // Places the bars and panels that follow the client area, before Resize.
    std::function<void()> layOut;
    // The window has been destroyed, by close() or by the user.
    std::function<void()> gone;
    // Only close() closes the window; the close box and Alt+F4 are refused.
    bool refuseCloseFromOutside = false;
    bool centreAtFirstShow = false;
    // The button Enter presses wherever the focus is.
    UINT defaultButton = 0;
    // The control that has the focus when the window becomes active again.
    HWND focus = nullptr;

protected:
    RECT pixels() const override;
    void setPixels(const RECT& r) override;

private:
    std::unique_ptr<Backdrop> backdrop_;
    bool shown_ = false;
};

} // namespace nv::win32
