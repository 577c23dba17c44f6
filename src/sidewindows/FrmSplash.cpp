#include "sidewindows/FrmSplash.h"

#include "platform/Platform.h"
#include "startup/AppSettings.h"

namespace nv {

const char* const kCopyrightLine = "Tessaly \u00a9 2004-2026";

frmSplash::frmSplash(const Controls& c)
    : Me(c.Me), Frame1(c.Frame1), lblCopyright(c.lblCopyright), lblProductName(c.lblProductName),
      lblVersion(c.lblVersion), Timer1(c.Timer1) {
    Frame1->Click = [this] { Frame1_Click(); };
    Me->KeyPress = [this] { Form_KeyPress(); };
    Timer1->Timer = [this] { Timer1_Timer(); };
    Timer1->setInterval(500);
    Timer1->setEnabled(true);
}

void frmSplash::Form_Load() {
    lblVersion->setCaption(fVersionText("Version "));
    lblProductName->setCaption(App.Title);
    lblCopyright->setCaption(kCopyrightLine);
    closingTime_ = platform().clock->now() + 2000;
}

void frmSplash::Form_KeyPress() {
    Me->close();
}

void frmSplash::Frame1_Click() {
    Me->close();
}

void frmSplash::Timer1_Timer() {
    if (platform().clock->now() > closingTime_)
        Me->close();
}

} // namespace nv
