#pragma once

#include "platform/Controls.h"

#include <QList>
#include <QObject>
#include <QTimer>

class QLabel;

namespace nv {

// A status bar over its panels, numbered from 1; panels 3 and 4 are the clock and the date,
// which it keeps up to date itself.
class QtStatusBar : public QObject, public StatusBar {
public:
    explicit QtStatusBar(const QList<QLabel*>& panels);
    std::string panelText(int panel) const override;
    void setPanelText(int panel, const std::string& text) override;

private:
    void tick();

    QList<QLabel*> panels_;
    QTimer clock_;
};

} // namespace nv
