#pragma once

#include "mainwindow/qt/MainWindow.h"
#include "sidewindows/qt/SplashWindow.h"
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

    // Null once the window has gone.
    MainWindow* mainWindow() const { return main_; }
    SplashWindow* splash() const { return splash_; }

private:
    void quitWhenAllGone();

    QPointer<MainWindow> main_;
    QPointer<SplashWindow> splash_;
    bool mainGone_ = true, splashGone_ = true;
    QObject watch_; // ends the watch on the windows when this goes first
};

} // namespace nv
