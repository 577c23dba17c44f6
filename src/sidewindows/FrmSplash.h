#pragma once

#include "platform/Clock.h"
#include "platform/Controls.h"

namespace nv {

// The start-up picture over the main window; it goes after two seconds, on a key or on a click
// on its frame.
class frmSplash {
public:
    struct Controls {
        Window* Me;
        Label* Frame1;
        Label* lblCopyright;
        Label* lblProductName;
        Label* lblVersion;
        TimerControl* Timer1;
    };

    explicit frmSplash(const Controls& controls);

    void Form_Load();
    void Form_KeyPress();
    void Frame1_Click();
    void Timer1_Timer();

    Moment closingTime() const { return closingTime_; }

    Window* Me;
    Label* Frame1;
    Label* lblCopyright;
    Label* lblProductName;
    Label* lblVersion;
    TimerControl* Timer1;

private:
    Moment closingTime_ = 0;
};

// The copyright line of the splash and the About window.
extern const char* const kCopyrightLine;

} // namespace nv
