#pragma once

#include "mainwindow/FrmMain.h"
#include "win32/Adapters.h"
#include "win32/Win32Window.h"

namespace nv::win32 {

class Win32StatusBar;

// The main window over FrmMain: the backup list, the target frame, the wizard's panel at the
// foot, menus and status bar.
class MainWindow : public FormFace<FrmMain>, public FrmMainFace {
public:
    MainWindow();
    ~MainWindow() override;

    FrmMain& form() override { return *form_; }
    std::unique_ptr<FormFace<Frm_Copy>> loadCopyWindow() override;
    std::unique_ptr<FormFace<frmAbout>> loadAbout() override;
    void runWithoutInput(const std::function<void()>& work) override;
    void sendKeys(const std::string& keys) override;

    Win32Window& window() { return *window_; }

private:
    FrmMain::Controls layOut();
    void layOutTargetFrame(FrmMain::Controls& c);
    void layOutBackupList(FrmMain::Controls& c);
    void layOutWizardPanel(FrmMain::Controls& c);
    void layOutMenus(FrmMain::Controls& c);
    void placeFootPanels();

    std::unique_ptr<Win32Window> window_;
    Adapters adapters_;
    HWND hwnd_;
    HWND picRestore_ = nullptr;
    Win32StatusBar* statusBar_ = nullptr;
    HACCEL accelerators_ = nullptr;
    std::unique_ptr<FrmMain> form_;
};

} // namespace nv::win32
