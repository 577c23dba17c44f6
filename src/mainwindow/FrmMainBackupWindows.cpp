#include "mainwindow/FrmMainBackupWindows.h"

#include "mainwindow/FrmMain.h"

namespace nv {

FrmMainBackupWindows::FrmMainBackupWindows(FrmMain& main) : main_(main) {}

FrmMainBackupWindows::~FrmMainBackupWindows() = default;

void FrmMainBackupWindows::subShowCopyWindow() {
    closeCopyWindow();
    auto window = main_.face.loadCopyWindow();
    window->form().Form_Load();
    copy_ = std::move(window);
    Frm_Copy& copy = copy_->form();
    copy.Me->show();
    copy.Text1->setText("Even geduld aub");
    copy.Animation1->play();
    copy.Me->repaint();
}

void FrmMainBackupWindows::setProgressMax(int maximum) {
    if (copy_)
        copy_->form().Pbr->setMax(maximum);
}

void FrmMainBackupWindows::setProgressValue(int value) {
    if (copy_)
        copy_->form().Pbr->setValue(value);
}

void FrmMainBackupWindows::setCopyText(const std::string& text) {
    if (!copy_)
        return;
    copy_->form().Text1->setText(text);
    copy_->form().Me->repaint();
}

void FrmMainBackupWindows::closeCopyWindow() {
    if (!copy_)
        return;
    copy_->form().Unload();
    copy_.reset();
}

void FrmMainBackupWindows::setStatusText(const std::string& text) {
    main_.StatusBar->setPanelText(1, text);
}

void FrmMainBackupWindows::RefreshStatus() {
    main_.RefreshStatus();
}

void FrmMainBackupWindows::refreshTargetDirectories() {
    main_.TargetDirectories.Refresh();
}

void FrmMainBackupWindows::runCopy(const std::function<void()>& work) {
    // The window's timer rests while a copy runs and goes on after it, however the copy ends.
    struct Resume {
        TimerControl* timer;
        bool watching;
        ~Resume() {
            if (watching)
                timer->setEnabled(true);
        }
    } resume{main_.Timer1, main_.Timer1->enabled()};
    main_.Timer1->setEnabled(false);
    main_.face.runWithoutInput(work);
}

} // namespace nv
