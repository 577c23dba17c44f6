#pragma once

#include "mainwindow/FrmMain.h"

#include <QMainWindow>
#include <memory>
#include <vector>

namespace nv {

// FrmMain on the screen: the controls as drawn, named, with the menus and the status bar, over
// the one FrmMain that gives them their behaviour. It centres itself when first shown.
class MainWindow : public QMainWindow, public FrmMainFace {
    Q_OBJECT
public:
    MainWindow();
    ~MainWindow() override;

    FrmMain& form() { return *form_; }

    std::unique_ptr<FormFace<Frm_Copy>> loadCopyWindow() override;
    std::unique_ptr<FormFace<frmAbout>> loadAbout() override;
    void runWithoutInput(const std::function<void()>& work) override;
    void sendKeys(const std::string& keys) override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    template <typename Adapter, typename... Args> Adapter* adapt(Args&&... args);
    FrmMain::Controls layOut();
    void layOutBackupList(QWidget* canvas, FrmMain::Controls& c);
    void layOutTargetPanel(QWidget* canvas, FrmMain::Controls& c);
    void layOutWizardPanel(QWidget* panel, FrmMain::Controls& c);
    void layOutMenus(FrmMain::Controls& c);
    void layOutStatusBar(FrmMain::Controls& c);
    void orderTabs();

    std::vector<std::unique_ptr<QObject>> adapters_;
    std::unique_ptr<FrmMain> form_;
    bool centred_ = false;
};

} // namespace nv
