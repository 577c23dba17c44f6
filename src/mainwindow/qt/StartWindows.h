#pragma once

#include "mainwindow/qt/FrmMain.h"
#include "platform/qt/SingleInstance.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/Main.h"

namespace nv {

extern const char* const kAlreadyOpenText;

// Brings up the main window and the splash; the program ends when both have gone.
class QtStartWindows : public StartWindows {
public:
    void loadMainWindow() override;
    void showMainWindow() override;
    void loadSplash() override;
    void showSplash() override;

    // Null once the window has gone.
    FrmMain* mainWindow() const { return mainGone_ ? nullptr : main_; }
    FrmSplash* splash() const { return splashGone_ ? nullptr : splash_; }

private:
    void quitWhenAllGone();

    FrmMain* main_ = nullptr;
    FrmSplash* splash_ = nullptr;
    bool mainGone_ = true;
    bool splashGone_ = true;
    QObject watch_; // ends the watch on the windows when this goes first
};

// At a start: tells the user when the program is already open on these settings, then has its
// window come forward. False when this start is to end.
bool goOnAsOnlyStart(SingleInstance& instance);

} // namespace nv
