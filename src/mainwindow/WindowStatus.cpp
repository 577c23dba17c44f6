// What the main window shows of the state: the last backup, the count of files, and which
// commands work while a target drive is there or not.
#include "mainwindow/FrmMain.h"

#include "mainwindow/StatusTexts.h"
#include "platform/Platform.h"
#include "startup/AppSettings.h"

namespace nv {

void FrmMain::RefreshStatus() {
    auto& s = AppSettings;
    TxtLastBackup->setText(fLastBackupText(platform().clock->today(), s.LastBackup));
    s.AantalFiles = static_cast<int16_t>(LstSelectedFiles->count());
    StatusBar->setPanelText(1, "Aantal files: " + std::to_string(s.AantalFiles));
    Lbl_InhoudDir->setCaption("Bestanden in de map " + TargetDirectories.path());
}

void FrmMain::subButtons(bool blnEnable) {
    Cmd_Backup->setEnabled(blnEnable);
    CmdDeleteDir->setEnabled(blnEnable);
    CmdSelectFiles->setEnabled(blnEnable);
    CmdVerwijder->setEnabled(blnEnable);
    CmdVervers->setVisible(!blnEnable);
    moBackUp->setEnabled(blnEnable);
    moRestore->setEnabled(blnEnable);
    CmdRestore->setVisible(blnEnable);
}

} // namespace nv
