// The target panel: the drive and its folders, the watch on a drive that is gone, and deleting
// a backup folder.
#include "mainwindow/FrmMain.h"

#include "platform/FailureText.h"
#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"
#include "startup/Settings.h"

namespace nv {

namespace {

constexpr const char* kDots = " . . .";

} // namespace

void FrmMain::setStationText(const std::string& text) {
    LblStation->setCaption(text);
    LblStation->setVisible(!text.empty());
}

void FrmMain::openTargetDrive() {
    auto& s = AppSettings;
    s.DriveTarget = TargetDrive.drive().substr(0, 2);
    TargetDirectories.setPath(s.DriveTarget + "\\");
    subWriteIni(s.strIniFile, kSectionBasic, "DriveTarget", s.DriveTarget);
    setStationText("");
    subButtons(true);
}

void FrmMain::TargetDrive_Change() {
    try {
        openTargetDrive();
    } catch (const FileFailure&) {
        setStationText("Station niet aangesloten of er zit geen kaart of data stick in. Sluit "
                       "het station aan en druk op 'Ververs'\r\n");
        subButtons(false);
        Timer1->setEnabled(true);
    }
}

void FrmMain::CmdVervers_Click() {
    try {
        openTargetDrive();
    } catch (const FileFailure&) {
        // "Ververs" alone stays silent when the drive is still not there.
    }
}

void FrmMain::Timer1_Timer() {
    auto& s = AppSettings;
    try {
        // The probe and the compare use the letters alone: a volume label behind them is no path.
        // The probe asks whether the drive can be reached, not for a name from its root, which
        // may hold thousands of files and is read again every second.
        const std::string drive = TargetDrive.drive().substr(0, 2);
        if (drive.size() < 2 || !platform().drives->ready(drive[0]))
            throw fileFailure(kFailDeviceUnavailable);
        const bool same = s.DriveTarget == drive;
        if (blnDriveLost) {
            TargetDrive.setDrive(s.DriveTarget);
            if (same)
                TargetDrive_Change();
            blnDriveLost = false;
        }
    } catch (const FileFailure&) {
        if (LblStation->caption().empty())
            setStationText("U heeft het station " + TargetDrive.drive() +
                           " ontkoppeld, sluit deze weer aan\r\n");
        std::string caption = LblStation->caption();
        if (caption.ends_with(kDots))
            caption.resize(caption.size() - 6);
        else
            caption += " .";
        setStationText(caption);
        blnDriveLost = true;
    }
}

void FrmMain::CmdDeleteDir_Click() {
    const std::string several = "U heeft meerdere directories in deze file staan, u dient deze "
                                "\u00e9\u00e9n voor \u00e9\u00e9n te verwijderen";
    const std::string path = TargetDirectories.path();
    if (path.size() < 4) {
        MsgBox("Kan de gehele schijf niet verwijderen", Buttons::OK, Icon::None);
    } else if (MsgBox("Wilt u de map " + path + " verwijderen?", Buttons::YesNo, Icon::Question,
                      DefaultButton::First, "Verwijderen Map") == Answer::Yes) {
        try {
            subDeleteByPattern(path + "\\*.*");
            StatusBar->setPanelText(1, "Files verwijderd");
            subRemoveFolder(path);
        } catch (const FileFailure&) {
            MsgBox(several, Buttons::OK, Icon::None);
        }
    }
    try {
        TargetDirectories.setPath(AppSettings.DriveTarget + "\\");
        TargetDirectories.Refresh();
        RefreshStatus();
    } catch (const FileFailure&) {
        MsgBox(several, Buttons::OK, Icon::None);
    }
}

void FrmMain::TargetDirectories_Change() {
    const std::string path = TargetDirectories.path();
    TargetFileLst.setPath(path);
    if (path.size() > 3) {
        CmdDeleteDir->setVisible(true);
        CmdDeleteDir->setCaption("Verwijder " + path);
    } else {
        CmdDeleteDir->setVisible(false);
    }
    Lbl_InhoudDir->setCaption("Bestanden in de map " + path);
}

} // namespace nv
