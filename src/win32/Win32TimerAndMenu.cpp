#include "win32/Win32TimerAndMenu.h"

namespace nv::win32 {

void Win32Timer::setInterval(int milliseconds) {
    interval_ = milliseconds;
    apply();
}

void Win32Timer::setEnabled(bool enabled) {
    running_ = enabled;
    apply();
}

// A timer of interval 0 stands still, as an enabled one without an interval does.
void Win32Timer::apply() {
    if (running_ && interval_ > 0)
        SetTimer(owner_, id_, static_cast<UINT>(interval_), nullptr);
    else
        KillTimer(owner_, id_);
}

bool Win32MenuItem::enabled() const {
    return !(GetMenuState(menu_, id_, MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED));
}

void Win32MenuItem::setEnabled(bool enabled) {
    EnableMenuItem(menu_, id_, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED));
}

} // namespace nv::win32
