#include "mainwindow/qt/StartWindows.h"

#include "mainwindow/qt/FrmMain.h"
#include "sidewindows/qt/FrmSplash.h"

#include <QCoreApplication>

namespace nv {

void QtStartWindows::loadMainWindow() {
    main_ = new FrmMain;
    main_->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(main_, &QObject::destroyed, [this] { quitWhenAllGone(); });
    main_->Form_Load();
}

void QtStartWindows::showMainWindow() {
    if (!main_)
        return;
    main_->show();
    // The window reaches the screen now, before the splash is made, not when Main has returned.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtStartWindows::loadSplash() {
    splash_ = new FrmSplash;
    QObject::connect(splash_, &QObject::destroyed, [this] { quitWhenAllGone(); });
    splash_->Form_Load();
}

void QtStartWindows::showSplash() {
    if (splash_)
        splash_->show();
}

// The splash is a tool window, which Qt does not count among the windows that keep a program
// alive; a main window closed within its two seconds must not end the program before it.
void QtStartWindows::quitWhenAllGone() {
    if (!main_ && !splash_)
        QCoreApplication::quit();
}

} // namespace nv
