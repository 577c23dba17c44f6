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
    const bool watching = main_.Timer1->isActive();
    main_.Timer1->stop();
    try {
        QtBackupWindows::runCopy(work);
    } catch (...) {
        if (watching)
            main_.Timer1->start();
        throw;
    }
    if (watching)
        main_.Timer1->start();
}

} // namespace nv
