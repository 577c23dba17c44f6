// What the main window shows of the state: the last backup, the status bar with its count, clock
// and date panels, and which commands work while a target drive is there or not.
#include "mainwindow/qt/FrmMain.h"

#include "mainwindow/StatusTexts.h"
#include "mainwindow/qt/MainWindowKit.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/DateText.h"
#include "platform/Platform.h"
#include "platform/qt/Twips.h"
#include "startup/AppSettings.h"

#include <QAction>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QStatusBar>
#include <QTimer>

namespace nv {

void FrmMain::buildStatusBar() {
    StatusBar = statusBar();
    StatusBar->setObjectName("StatusBar");
    StatusBar->setAccessibleName("Statusbalk");
    StatusBar->setSizeGripEnabled(true);
    StatusBar->setMinimumHeight(twips(375));
    const int widths[4] = {4000, 2000, 1440, 1440};
    const char* names[4] = {"StatusBar_Panel1", "StatusBar_Panel2", "StatusBar_Panel3",
                            "StatusBar_Panel4"};
    for (int i = 0; i < 4; ++i) {
        panels_[i] = new QLabel(StatusBar);
        panels_[i]->setObjectName(names[i]);
        panels_[i]->setFixedWidth(twips(widths[i]));
        panels_[i]->setFrameStyle(QFrame::Panel | QFrame::Sunken);
        StatusBar->addWidget(panels_[i]);
    }
    // Panels 3 and 4 are the status bar's own clock and date.
    clock_ = new QTimer(this);
    clock_->setInterval(1000);
    connect(clock_, &QTimer::timeout, this, &FrmMain::tickClock);
    clock_->start();
    tickClock();
}

void FrmMain::tickClock() {
    Moment now = platform().clock->now();
    Date today = static_cast<Date>(now >= 0 ? now / kMsPerDay : (now - kMsPerDay + 1) / kMsPerDay);
    setPanelText(3, fromStd(shortTimeText(now)));
    setPanelText(4, fromStd(shortDateText(today)));
}

QString FrmMain::panelText(int panel) const {
    return panels_[panel - 1]->text();
}

void FrmMain::setPanelText(int panel, const QString& text) {
    // The clock sets its panel every second; a text that stays the same is no repaint.
    if (panels_[panel - 1]->text() != text)
        panels_[panel - 1]->setText(text);
}

void FrmMain::RefreshStatus() {
    auto& s = AppSettings;
    TxtLastBackup->setText(fromStd(fLastBackupText(platform().clock->today(), s.LastBackup)));
    s.AantalFiles = static_cast<int16_t>(LstSelectedFiles->count());
    setPanelText(1, "Aantal files: " + QString::number(s.AantalFiles));
    Lbl_InhoudDir->setText("Bestanden in de map " + TargetDirectories->path());
}

void FrmMain::subButtons(bool blnEnable) {
    Cmd_Backup->setEnabled(blnEnable);
    CmdDeleteDir->setEnabled(blnEnable);
    CmdSelectFiles->setEnabled(blnEnable);
    CmdVerwijder->setEnabled(blnEnable);
    CmdVervers->setVisible(!blnEnable);
    moBackUp->setEnabled(blnEnable);
    moRestore->setEnabled(blnEnable);
    CmdRestore->setVisible(blnEnable);
}

} // namespace nv
