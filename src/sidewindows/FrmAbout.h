#pragma once

#include "platform/Controls.h"

namespace nv {

// What the tool is, its version, and where to mail with questions.
class frmAbout {
public:
    struct Controls {
        Window* Me;
        Label* lblTitle;
        Label* lblVersion;
        Label* lblDescription;
        Label* lblDisclaimer;
        TextBox* TxtInfo;
        Label* LblMail;
        Button* cmdOK;
    };

    explicit frmAbout(const Controls& controls);

    void Form_Load();
    void cmdOK_Click();
    void LblMail_Click();

    Window* Me;
    Label* lblTitle;
    Label* lblVersion;
    Label* lblDescription;
    Label* lblDisclaimer;
    TextBox* TxtInfo;
    Label* LblMail;
    Button* cmdOK;
};

extern const char* const kSupportAddress;
// The colours of the mail link, before and after a click.
constexpr Rgb kMailLinkColour{0, 0, 192};
constexpr Rgb kMailLinkVisitedColour{192, 0, 0};

} // namespace nv
