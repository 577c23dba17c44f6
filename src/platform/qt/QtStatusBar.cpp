#include "platform/qt/QtStatusBar.h"

#include "platform/DateText.h"
#include "platform/Platform.h"

#include <QLabel>

namespace nv {

QtStatusBar::QtStatusBar(const QList<QLabel*>& panels) : panels_(panels) {
    clock_.setInterval(1000);
    connect(&clock_, &QTimer::timeout, this, &QtStatusBar::tick);
    clock_.start();
    tick();
}

std::string QtStatusBar::panelText(int panel) const {
    return panels_.at(panel - 1)->text().toStdString();
}

void QtStatusBar::setPanelText(int panel, const std::string& text) {
    // The clock sets its panel every second; a text that stays the same is no repaint.
    const QString shown = QString::fromStdString(text);
    if (panels_.at(panel - 1)->text() != shown)
        panels_.at(panel - 1)->setText(shown);
}

void QtStatusBar::tick() {
    const Moment now = platform().clock->now();
    setPanelText(3, shortTimeText(now));
    setPanelText(4, shortDateText(dateOf(now)));
}

} // namespace nv
