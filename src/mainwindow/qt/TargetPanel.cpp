// The target panel: the drive and its folders, the watch on a drive that is gone, and deleting
// a backup folder.
#include "mainwindow/qt/FrmMain.h"

#include "mainwindow/qt/MainWindowKit.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/FailureText.h"
#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/MsgBox.h"
#include "startup/Settings.h"

#include <QLabel>
#include <QPushButton>
#include <QTimer>

namespace nv {

void FrmMain::openTargetDrive() {
    auto& s = AppSettings;
    s.DriveTarget = TargetDrive->drive().left(2).toStdString();
    TargetDirectories->setPath(fromStd(s.DriveTarget + "\\"));
    subWriteIni(s.strIniFile, kSectionBasic, "DriveTarget", s.DriveTarget);
    LblStation->setText("");
    subButtons(true);
}

void FrmMain::TargetDrive_Change() {
    try {
        openTargetDrive();
    } catch (const FileFailure&) {
        LblStation->setText("Station niet aangesloten of er zit geen kaart of data stick in. Sluit "
                            "het station aan en druk op 'Ververs'\r\n");
        subButtons(false);
        Timer1->start();
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
        QString drive = TargetDrive->drive().left(2);
        if (drive.size() < 2 || !platform().drives->ready(static_cast<char>(drive[0].toLatin1())))
            throw fileFailure(kFailDeviceUnavailable);
        bool same = fromStd(s.DriveTarget) == drive;
        if (blnDriveLost) {
            TargetDrive->setDrive(fromStd(s.DriveTarget));
            if (same)
                TargetDrive_Change();
            blnDriveLost = false;
        }
    } catch (const FileFailure&) {
        if (LblStation->text().isEmpty())
            LblStation->setText("U heeft het station " + TargetDrive->drive() +
                                " ontkoppeld, sluit deze weer aan\r\n");
        QString caption = LblStation->text();
        if (caption.endsWith(" . . ."))
            caption.chop(6);
        else
            caption += " .";
        LblStation->setText(caption);
        blnDriveLost = true;
    }
}

void FrmMain::CmdDeleteDir_Click() {
    const std::string several = "U heeft meerdere directories in deze file staan, u dient deze "
                                "\u00e9\u00e9n voor \u00e9\u00e9n te verwijderen";
    std::string path = TargetDirectories->path().toStdString();
    if (TargetDirectories->path().size() < 4) {
        MsgBox("Kan de gehele schijf niet verwijderen", Buttons::OK, Icon::None);
    } else if (MsgBox("Wilt u de map " + path + " verwijderen?", Buttons::YesNo, Icon::Question,
                      DefaultButton::First, "Verwijderen Map") == Answer::Yes) {
        try {
            subDeleteByPattern(path + "\\*.*");
            setPanelText(1, "Files verwijderd");
            subRemoveFolder(path);
        } catch (const FileFailure&) {
            MsgBox(several, Buttons::OK, Icon::None);
        }
    }
    try {
        TargetDirectories->setPath(fromStd(AppSettings.DriveTarget + "\\"));
        TargetDirectories->Refresh();
        RefreshStatus();
    } catch (const FileFailure&) {
        MsgBox(several, Buttons::OK, Icon::None);
    }
}

void FrmMain::TargetDirectories_Change() {
    QString path = TargetDirectories->path();
    TargetFileLst->setPath(path);
    if (path.size() > 3) {
        CmdDeleteDir->setVisible(true);
        CmdDeleteDir->setText("Verwijder " + path);
    } else {
        CmdDeleteDir->setVisible(false);
    }
    Lbl_InhoudDir->setText("Bestanden in de map " + path);
}

} // namespace nv
