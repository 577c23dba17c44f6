#include "backup/qt/QtBackupWindows.h"

#include "backup/qt/FrmCopy.h"
#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/TargetLists.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QLineEdit>
#include <QMovie>
#include <QProgressBar>
#include <QTimer>
#include <exception>
#include <memory>
#include <thread>

namespace nv {

namespace {

bool isUserInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletRelease:
    // The close box of the main window: the user's too, and nothing else closes during a copy.
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

// Drops user input while a copy works. The window system holds its input back during the
// copy's event loop; it meets this filter when the copy is over, so that a click or a key made
// meanwhile does not act later, say on the next box of the run. Input posted by code is caught
// on its way.
class InputDrop : public QObject {
protected:
    bool eventFilter(QObject*, QEvent* event) override { return isUserInput(event->type()); }
};

} // namespace

QtBackupWindows::~QtBackupWindows() {
    delete copy_.data();
}

void QtBackupWindows::subShowCopyWindow() {
    closeCopyWindow();
    auto window = std::make_unique<FrmCopy>(&main_);
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

void QtBackupWindows::setStatusText(const std::string& text) {
    main_.setPanelText(1, QString::fromStdString(text));
}

void QtBackupWindows::RefreshStatus() {
    main_.RefreshStatus();
}

void QtBackupWindows::refreshTargetDirectories() {
    main_.TargetDirectories->Refresh();
}

void QtBackupWindows::runCopy(const std::function<void()>& work) {
    QEventLoop loop;
    std::exception_ptr failure;
    std::thread worker([&] {
        try {
            work();
        } catch (...) {
            failure = std::current_exception();
        }
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });

    const bool watching = main_.Timer1->isActive();
    main_.Timer1->stop();
    InputDrop drop;
    QCoreApplication::instance()->installEventFilter(&drop);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    worker.join();
    // The input the window system held back meets the filter now.
    QCoreApplication::processEvents();
    QCoreApplication::instance()->removeEventFilter(&drop);
    if (watching)
        main_.Timer1->start();

    if (failure)
        std::rethrow_exception(failure);
}

} // namespace nv
