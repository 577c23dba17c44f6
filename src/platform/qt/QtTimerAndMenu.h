#pragma once

#include "platform/Controls.h"

#include <QObject>

class QAction;
class QTimer;

namespace nv {

class QtTimer : public QObject, public TimerControl {
public:
    explicit QtTimer(QTimer* timer);
    int interval() const override;
    void setInterval(int milliseconds) override;
    bool enabled() const override;
    void setEnabled(bool enabled) override;

private:
    QTimer* timer_;
};

// A menu entry. Its Click comes once the menu has closed and answered, so a screen reader that
// chose the entry is not kept waiting for the window or box the entry opens.
class QtMenuItem : public QObject, public MenuItem {
public:
    explicit QtMenuItem(QAction* action);
    bool enabled() const override;
    void setEnabled(bool enabled) override;

private:
    QAction* action_;
};

} // namespace nv
