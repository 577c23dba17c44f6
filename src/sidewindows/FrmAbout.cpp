#include "sidewindows/FrmAbout.h"

#include "sidewindows/FrmSplash.h"
#include "sidewindows/OpenUrl.h"
#include "startup/AppSettings.h"

namespace nv {

const char* const kSupportAddress = "support@tessaly.example";

frmAbout::frmAbout(const Controls& c)
    : Me(c.Me), lblTitle(c.lblTitle), lblVersion(c.lblVersion), lblDescription(c.lblDescription),
      lblDisclaimer(c.lblDisclaimer), TxtInfo(c.TxtInfo), LblMail(c.LblMail), cmdOK(c.cmdOK) {
    cmdOK->Click = [this] { cmdOK_Click(); };
    LblMail->Click = [this] { LblMail_Click(); };
    LblMail->setCaption(kSupportAddress);
    LblMail->setForeColor(kMailLinkColour);
}

void frmAbout::Form_Load() {
    Me->setCaption("Tessaly Backup Tool");
    lblVersion->setCaption(fVersionText("Versie "));
    lblTitle->setCaption("Norvale Backup Tool");
    lblDescription->setCaption(
        "Eenvoudig progamma om de Norvale bestanden systematisch te kopieren naar een back-up "
        "medium zoals een ZIP drive\r\n\r\nToevoegen van andere belangrijke files is mogelijk, let "
        "wel op de maximale capaciteit van het backup medium, het programma regelt geen backup "
        "over meerdere diskettes");
    TxtInfo->setText("Voor vragen, mail naar:");
    lblDisclaimer->setCaption(kCopyrightLine);
}

void frmAbout::cmdOK_Click() {
    Me->close();
}

void frmAbout::LblMail_Click() {
    LblMail->setForeColor(kMailLinkVisitedColour);
    subOpenUrl(std::string("mailto:") + kSupportAddress);
}

} // namespace nv
