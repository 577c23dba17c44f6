#include "platform/qt/HelpKey.h"

#include <QKeyEvent>

namespace nv {

bool HelpKey::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1) {
        pressed_();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace nv
