#include "mainwindow/qt/StartWindows.h"

#include "mainwindow/qt/FrmMain.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/MsgBox.h"

#include <QCoreApplication>

namespace nv {

const char* const kAlreadyOpenText =
    "Norvale Backup is al geopend.\r\n\r\nU kunt verder werken in het venster dat al openstaat.";

bool goOnAsOnlyStart(SingleInstance& instance) {
    if (instance.first())
        return true;
    MsgBox(kAlreadyOpenText, Buttons::OK, Icon::Information);
    instance.askFirstToComeForward();
    return false;
}

void QtStartWindows::loadMainWindow() {
    main_ = new FrmMain;
    mainGone_ = false;
    main_->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(main_, &QObject::destroyed, &watch_, [this] {
        mainGone_ = true;
        quitWhenAllGone();
    });
    main_->Form_Load();
}

void QtStartWindows::showMainWindow() {
    if (mainGone_)
        return;
    main_->show();
    // The window reaches the screen now, before the splash is made, not when Main has returned.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtStartWindows::loadSplash() {
    splash_ = new FrmSplash;
    splashGone_ = false;
    QObject::connect(splash_, &QObject::destroyed, &watch_, [this] {
        splashGone_ = true;
        quitWhenAllGone();
    });
    splash_->Form_Load();
}

void QtStartWindows::showSplash() {
    if (!splashGone_)
        splash_->show();
}

// The splash is a tool window, which Qt does not count among the windows that keep a program
// alive; a main window closed within its two seconds must not end the program before it.
void QtStartWindows::quitWhenAllGone() {
    if (mainGone_ && splashGone_)
        QCoreApplication::quit();
}

} // namespace nv
