#pragma once

#include "mainwindow/qt/FrmMain.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/Main.h"

#include <QPointer>

namespace nv {

// Brings up the main window and the splash; the program ends when both have gone.
class QtStartWindows : public StartWindows {
public:
    void loadMainWindow() override;
    void showMainWindow() override;
    void loadSplash() override;
    void showSplash() override;

    FrmMain* mainWindow() const { return main_; }
    FrmSplash* splash() const { return splash_; }

private:
    void quitWhenAllGone();

    QPointer<FrmMain> main_;
    QPointer<FrmSplash> splash_;
};

} // namespace nv
