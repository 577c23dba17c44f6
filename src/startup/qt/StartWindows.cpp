#include "startup/qt/StartWindows.h"

#include <QCoreApplication>

namespace nv {

void QtStartWindows::loadMainWindow() {
    main_ = new MainWindow;
    mainGone_ = false;
    main_->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(main_, &QObject::destroyed, &watch_, [this] {
        mainGone_ = true;
        quitWhenAllGone();
    });
    main_->form().Form_Load();
}

void QtStartWindows::showMainWindow() {
    if (!main_)
        return;
    main_->show();
    // The window reaches the screen now, before the splash is made, not when Main has returned.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

void QtStartWindows::loadSplash() {
    splash_ = new SplashWindow;
    splashGone_ = false;
    QObject::connect(splash_, &QObject::destroyed, &watch_, [this] {
        splashGone_ = true;
        quitWhenAllGone();
    });
    splash_->form().Form_Load();
}

void QtStartWindows::showSplash() {
    if (splash_)
        splash_->show();
}

// The splash is a tool window, which Qt does not count among the windows that keep a program
// alive; a main window closed within its two seconds must not end the program before it.
void QtStartWindows::quitWhenAllGone() {
    if (mainGone_ && splashGone_)
        QCoreApplication::quit();
}

} // namespace nv
