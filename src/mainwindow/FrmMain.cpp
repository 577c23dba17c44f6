// The main window: its controls' events, its load, its size and the commands of its menus.
#include "mainwindow/FrmMain.h"

#include "backup/BackupRun.h"
#include "mainwindow/FrmMainBackupWindows.h"
#include "mainwindow/StatusTexts.h"
#include "mainwindow/TargetRoot.h"
#include "platform/FailureText.h"
#include "platform/FileFailure.h"
#include "sidewindows/FrmAbout.h"
#include "startup/AppSettings.h"
#include "startup/MsgBox.h"

namespace nv {

namespace {

constexpr int kMinimumHeight = 9000;

} // namespace

FrmMain::FrmMain(const Controls& c, FrmMainFace& face)
    : Me(c.Me), TxtLastBackup(c.TxtLastBackup), Label1(c.Label1),
      LstSelectedFiles(c.LstSelectedFiles), Shape1(c.Shape1), Cmd_Backup(c.Cmd_Backup),
      CmdSelectFiles(c.CmdSelectFiles), CmdVerwijder(c.CmdVerwijder), fraDirectory(c.fraDirectory),
      TargetDrive(*c.TargetDrive), TargetDirectories(*c.TargetDirectories),
      TargetFileLst(*c.TargetFileLst), LblStation(c.LblStation), Lbl_InhoudDir(c.Lbl_InhoudDir),
      CmdDeleteDir(c.CmdDeleteDir), CmdVervers(c.CmdVervers), CmdRestore(c.CmdRestore),
      PicRestore(c.PicRestore), LblRestore{c.LblRestore[0], c.LblRestore[1]},
      CmdWizRestore{c.CmdWizRestore[0], c.CmdWizRestore[1], c.CmdWizRestore[2]},
      StatusBar(c.StatusBar), Timer1(c.Timer1), MoVoegToe(c.MoVoegToe), MoVerwijder(c.MoVerwijder),
      MoAfsluiten(c.MoAfsluiten), moBackUp(c.moBackUp), moRestore(c.moRestore), MoHelp(c.MoHelp),
      MoAbout(c.MoAbout), face(face) {
    Timer1->setInterval(1000);
    Timer1->setEnabled(false);
    bindEvents();
}

void FrmMain::bindEvents() {
    Me->Resize = [this] { Form_Resize(); };
    Cmd_Backup->Click = [this] { Cmd_Backup_Click(); };
    CmdSelectFiles->Click = [this] { CmdSelectFiles_Click(); };
    CmdVerwijder->Click = [this] { CmdVerwijder_Click(); };
    LstSelectedFiles->KeyDown = [this](int keyCode, int shift) {
        LstSelectedFiles_KeyDown(keyCode, shift);
    };
    TargetDrive.Change = [this] { TargetDrive_Change(); };
    TargetDirectories.Change = [this] { TargetDirectories_Change(); };
    CmdDeleteDir->Click = [this] { CmdDeleteDir_Click(); };
    CmdVervers->Click = [this] { CmdVervers_Click(); };
    CmdRestore->Click = [this] { CmdRestore_Click(); };
    for (int16_t i = 0; i < 3; ++i)
        CmdWizRestore[i]->Click = [this, i] { CmdWizRestore_Click(i); };
    Timer1->Timer = [this] { Timer1_Timer(); };
    MoVoegToe->Click = [this] { CmdSelectFiles_Click(); };
    MoVerwijder->Click = [this] { CmdVerwijder_Click(); };
    MoAfsluiten->Click = [this] { MoAfsluiten_Click(); };
    moBackUp->Click = [this] { Cmd_Backup_Click(); };
    moRestore->Click = [this] { CmdRestore_Click(); };
    MoHelp->Click = [this] { MoHelp_Click(); };
    MoAbout->Click = [this] { MoAbout_Click(); };
}

void FrmMain::Form_Load() {
    auto& s = AppSettings;
    const std::function<void()> steps[] = {
        [&] { setStationText(""); },
        [&] { StatusBar->setPanelText(2, fVersionText("Versie ")); },
        [&] { fraDirectory->setTop(Cmd_Backup->place().top + 1080); },
        [&] { Me->setHeight(kMinimumHeight); },
        [&] {
            for (int n = 1; n <= s.AantalFiles; ++n) {
                intLoop = static_cast<int16_t>(n);
                LstSelectedFiles->addItem(s.strFiles[static_cast<std::size_t>(n)]);
            }
        },
        [&] { RefreshStatus(); },
        [&] { TargetDrive.setDrive(s.DriveTarget); },
        [&] { TargetDirectories.setPath(fTargetRoot(s.DriveTarget)); },
        [&] {
            if (s.blnRestoreOnly) {
                Cmd_Backup->setVisible(false);
                CmdSelectFiles->setVisible(false);
                CmdVerwijder->setVisible(false);
                CmdRestore_Click();
            }
        },
        [&] { Timer1->setEnabled(true); },
    };
    for (const auto& step : steps) {
        try {
            step();
        } catch (const FileFailure& failure) {
            if (failure.Number != kFailDeviceUnavailable) {
                MsgBox(std::to_string(failure.Number) + " - " + failure.Description, Buttons::OK,
                       Icon::None);
                return;
            }
            setStationText(fDriveAbsentAtStartText(s.DriveTarget));
            subButtons(false);
            blnDriveLost = true;
        }
    }
}

// A minimised or maximised window has no height of the user's to correct.
void FrmMain::Form_Resize() {
    if (Me->state() == WindowState::Normal && Me->place().height < kMinimumHeight)
        Me->setHeight(kMinimumHeight);
}

void FrmMain::MoHelp_Click() {
    // The key does the work, so the menu item and F1 stay one and the same.
    face.sendKeys("{F1}");
}

void FrmMain::MoAfsluiten_Click() {
    Me->close();
}

void FrmMain::MoAbout_Click() {
    auto about = face.loadAbout();
    about->form().Form_Load();
    about->form().Me->showModal();
}

void FrmMain::Cmd_Backup_Click() {
    FrmMainBackupWindows windows(*this);
    nv::Cmd_Backup_Click(windows, intLoop, strBackupFolder);
}

} // namespace nv
