#include "backup/qt/QtBackupWindows.h"

#include "backup/qt/FrmCopy.h"
#include "platform/qt/RunWithoutInput.h"

#include <QLineEdit>
#include <QMovie>
#include <QProgressBar>
#include <memory>

namespace nv {

QtBackupWindows::~QtBackupWindows() {
    delete copy_.data();
}

void QtBackupWindows::subShowCopyWindow() {
    closeCopyWindow();
    auto window = std::make_unique<FrmCopy>(&owner_);
    window->Form_Load();
    copy_ = window.release();
    copy_->show();
    copy_->Text1->setText("Even geduld aub");
    copy_->clip()->start();
    copy_->repaint();
}

void QtBackupWindows::setProgressMax(int maximum) {
    if (copy_)
        copy_->Pbr->setMaximum(maximum);
}

void QtBackupWindows::setProgressValue(int value) {
    if (copy_)
        copy_->Pbr->setValue(value);
}

void QtBackupWindows::setCopyText(const std::string& text) {
    if (!copy_)
        return;
    copy_->Text1->setText(QString::fromStdString(text));
    copy_->repaint();
}

void QtBackupWindows::closeCopyWindow() {
    if (!copy_)
        return;
    copy_->Unload();
    delete copy_.data();
}

void QtBackupWindows::runCopy(const std::function<void()>& work) {
    runWithoutUserInput(work);
}

} // namespace nv
