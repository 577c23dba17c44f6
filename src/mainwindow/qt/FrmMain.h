#pragma once

#include <QMainWindow>
#include <cstdint>
#include <string>

class QAction;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QMenu;
class QPushButton;
class QStatusBar;
class QTimer;

namespace nv {

class DriveListBox;
class DirListBox;
class FileListBox;
class ShapeControl;

// The program's one working window: the backup list, the target panel and the status texts.
class FrmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit FrmMain(QWidget* parent = nullptr);

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

    // The window's height in twips, menu bar and status bar included.
    int heightTwips() const;
    void setHeightTwips(int height);

    // Panels of StatusBar, numbered from 1.
    QString panelText(int panel) const;
    void setPanelText(int panel, const QString& text);

    QLineEdit* TxtLastBackup;
    QLabel* Label1;
    QListWidget* LstSelectedFiles;
    ShapeControl* Shape1;
    QPushButton* Cmd_Backup;
    QPushButton* CmdSelectFiles;
    QPushButton* CmdVerwijder;
    QGroupBox* fraDirectory;
    DriveListBox* TargetDrive;
    DirListBox* TargetDirectories;
    FileListBox* TargetFileLst;
    QLabel* LblStation;
    QLabel* Lbl_InhoudDir;
    QPushButton* CmdDeleteDir;
    QPushButton* CmdVervers;
    QPushButton* CmdRestore;
    QWidget* PicRestore;
    QLabel* LblRestore[2];
    QPushButton* CmdWizRestore[3];
    QStatusBar* StatusBar;
    QTimer* Timer1;

    QMenu* MnuBestand;
    QAction* MoVoegToe;
    QAction* MoVerwijder;
    QAction* MoAfsluiten;
    QMenu* mnuExecute;
    QAction* moBackUp;
    QAction* moRestore;
    QMenu* MnuHelp;
    QAction* MoHelp;
    QAction* MoAbout;

    int16_t intLoop = 0;
    int16_t intRemoveRow = 0; // the row CmdVerwijder_Click asks about
    std::string strBackupFolder;
    bool blnDriveLost = false;
    int16_t intWizardStep = 0;

protected:
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // The steps of a drive change; throws FileFailure at the first that fails.
    void openTargetDrive();
    void buildControls(QWidget* canvas);
    void buildWizardPanel(QWidget* canvas);
    // The step of the wizard that subRestoreWizard enters; throws on a failure.
    void enterWizardStep();
    // The window's Top and Height in twips, as the wizard moves and grows it.
    void setTopTwips(int top);
    void buildMenus();
    void buildStatusBar();
    void setTabOrder();
    void tickClock();

    QLabel* panels_[4] = {};
    QTimer* clock_;
    bool centred_ = false;
};

} // namespace nv
