#include "platform/qt/QtTimerAndMenu.h"

#include <QAction>
#include <QTimer>

namespace nv {

QtTimer::QtTimer(QTimer* timer) : timer_(timer) {
    connect(timer, &QTimer::timeout, this, [this] {
        if (Timer)
            Timer();
    });
}

int QtTimer::interval() const {
    return timer_->interval();
}

void QtTimer::setInterval(int milliseconds) {
    timer_->setInterval(milliseconds);
}

bool QtTimer::enabled() const {
    return timer_->isActive();
}

void QtTimer::setEnabled(bool enabled) {
    if (enabled)
        timer_->start();
    else
        timer_->stop();
}

QtMenuItem::QtMenuItem(QAction* action) : action_(action) {
    connect(
        action, &QAction::triggered, this,
        [this] {
            if (Click)
                Click();
        },
        Qt::QueuedConnection);
}

bool QtMenuItem::enabled() const {
    return action_->isEnabled();
}

void QtMenuItem::setEnabled(bool enabled) {
    action_->setEnabled(enabled);
}

} // namespace nv
