#include "mainwindow/qt/FrmMainBackupWindows.h"

#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/TargetLists.h"

#include <QTimer>

namespace nv {

FrmMainBackupWindows::FrmMainBackupWindows(FrmMain& main) : QtBackupWindows(main), main_(main) {}

void FrmMainBackupWindows::setStatusText(const std::string& text) {
    main_.setPanelText(1, QString::fromStdString(text));
}

void FrmMainBackupWindows::RefreshStatus() {
    main_.RefreshStatus();
}

void FrmMainBackupWindows::refreshTargetDirectories() {
    main_.TargetDirectories->Refresh();
}

void FrmMainBackupWindows::runCopy(const std::function<void()>& work) {
    // The window's timer rests while a copy runs and goes on after it, however the copy ends.
    struct Resume {
        QTimer* timer;
        bool watching;
        ~Resume() {
            if (watching)
                timer->start();
        }
    } resume{main_.Timer1, main_.Timer1->isActive()};
    main_.Timer1->stop();
    QtBackupWindows::runCopy(work);
}

} // namespace nv
