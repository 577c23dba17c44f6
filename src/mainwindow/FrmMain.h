#pragma once

#include "mainwindow/TargetLists.h"
#include "platform/Controls.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace nv {

class Frm_Copy;
class frmAbout;

// What the main window's face offers beside its controls.
class FrmMainFace {
public:
    virtual ~FrmMainFace() = default;
    // Makes Frm_Copy over the main window, not yet loaded or shown.
    virtual std::unique_ptr<FormFace<Frm_Copy>> loadCopyWindow() = 0;
    // Makes frmAbout, without owner, not yet loaded or shown.
    virtual std::unique_ptr<FormFace<frmAbout>> loadAbout() = 0;
    // Runs work on a worker thread. Meanwhile the window's thread keeps clips moving and repaints
    // but serves no user input; what work throws is thrown here.
    virtual void runWithoutInput(const std::function<void()>& work) = 0;
    // Sends keys to the program as if typed, without waiting for them: "{F1}".
    virtual void sendKeys(const std::string& keys) = 0;
};

// The program's one working window: the backup list, the target panel, the status texts and,
// as a mode of the same window, the restore wizard.
class FrmMain {
public:
    struct Controls {
        Window* Me;
        TextBox* TxtLastBackup;
        Label* Label1;
        ListBox* LstSelectedFiles;
        Shape* Shape1;
        Button* Cmd_Backup;
        Button* CmdSelectFiles;
        Button* CmdVerwijder;
        Label* fraDirectory;
        ComboBox* TargetDrive;
        ListBox* TargetDirectories;
        ListBox* TargetFileLst;
        Label* LblStation;
        Label* Lbl_InhoudDir;
        Button* CmdDeleteDir;
        Button* CmdVervers;
        Button* CmdRestore;
        Control* PicRestore;
        Label* LblRestore[2];
        Button* CmdWizRestore[3];
        nv::StatusBar* StatusBar;
        TimerControl* Timer1;
        MenuItem* MoVoegToe;
        MenuItem* MoVerwijder;
        MenuItem* MoAfsluiten;
        MenuItem* moBackUp;
        MenuItem* moRestore;
        MenuItem* MoHelp;
        MenuItem* MoAbout;
    };

    // Takes the controls and binds their events; the drive list reads the drives now.
    FrmMain(const Controls& controls, FrmMainFace& face);
    FrmMain(const FrmMain&) = delete;
    FrmMain& operator=(const FrmMain&) = delete;

    void Form_Load();
    void Form_Resize();
    void RefreshStatus();
    void subButtons(bool blnEnable);

    void MoHelp_Click();
    void MoAfsluiten_Click();
    void MoAbout_Click();

    void Cmd_Backup_Click();
    void CmdSelectFiles_Click();
    void CmdVerwijder_Click();
    void LstSelectedFiles_KeyDown(int KeyCode, int Shift);
    void INIbijwerken();

    void CmdRestore_Click();
    void CmdWizRestore_Click(int16_t Index);
    void subRestoreWizard();
    void MoveShape(int16_t subToX, int16_t subToY, int16_t subWidth, int16_t subHeight);

    void TargetDrive_Change();
    void TargetDirectories_Change();
    void CmdVervers_Click();
    void Timer1_Timer();
    void CmdDeleteDir_Click();

    Window* Me;
    TextBox* TxtLastBackup;
    Label* Label1;
    ListBox* LstSelectedFiles;
    Shape* Shape1;
    Button* Cmd_Backup;
    Button* CmdSelectFiles;
    Button* CmdVerwijder;
    Label* fraDirectory;
    DriveListBox TargetDrive;
    DirListBox TargetDirectories;
    FileListBox TargetFileLst;
    Label* LblStation;
    Label* Lbl_InhoudDir;
    Button* CmdDeleteDir;
    Button* CmdVervers;
    Button* CmdRestore;
    Control* PicRestore;
    Label* LblRestore[2];
    Button* CmdWizRestore[3];
    nv::StatusBar* StatusBar;
    TimerControl* Timer1;
    MenuItem* MoVoegToe;
    MenuItem* MoVerwijder;
    MenuItem* MoAfsluiten;
    MenuItem* moBackUp;
    MenuItem* moRestore;
    MenuItem* MoHelp;
    MenuItem* MoAbout;

    int16_t intLoop = 0;
    int16_t intRemoveRow = 0; // the row CmdVerwijder_Click asks about
    std::string strBackupFolder;
    bool blnDriveLost = false;
    int16_t intWizardStep = 0;

    FrmMainFace& face;

private:
    void bindEvents();
    // The steps of a drive change; throws FileFailure at the first that fails.
    void openTargetDrive();
    // LblStation stands hidden while it is empty: an empty label would be spoken by the title of
    // its frame.
    void setStationText(const std::string& text);
    // The step of the wizard that subRestoreWizard enters; throws on a failure.
    void enterWizardStep();
};

} // namespace nv
