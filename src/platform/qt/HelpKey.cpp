#include "platform/qt/HelpKey.h"

#include "platform/Platform.h"
#include "startup/AppSettings.h"

#include <QKeyEvent>

namespace nv {

bool HelpKey::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1) {
        if (platform().shell && !App.HelpFile.empty())
            platform().shell->open(App.HelpFile);
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace nv
