#include "platform/qt/RunWithoutInput.h"
#include "platform/WorkerThread.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
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
    // The close box of a window: the user's too, and nothing else closes during the work.
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

// Drops user input while the work runs. The window system holds its input back during the
// work's event loop; it meets this filter when the work is over, so that a click or a key made
// meanwhile does not act later, say on the next box of the run. Input posted by code is caught
// on its way.
class InputDrop : public QObject {
protected:
    bool eventFilter(QObject*, QEvent* event) override { return isUserInput(event->type()); }
};

} // namespace

void runWithoutUserInput(const std::function<void()>& work) {
    QEventLoop loop;
    std::exception_ptr failure;
    std::thread worker = startWorker(work, failure, [&loop] {
        QMetaObject::invokeMethod(&loop, &QEventLoop::quit, Qt::QueuedConnection);
    });

    InputDrop drop;
    QCoreApplication::instance()->installEventFilter(&drop);
    loop.exec(QEventLoop::ExcludeUserInputEvents);
    worker.join();
    // The input the window system held back meets the filter now.
    QCoreApplication::processEvents();
    QCoreApplication::instance()->removeEventFilter(&drop);

    if (failure)
        std::rethrow_exception(failure);
}

} // namespace nv
