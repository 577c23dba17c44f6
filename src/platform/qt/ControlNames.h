#pragma once

#include <QString>
#include <QWidget>

namespace nv {

// Gives a control its name in the program and the name a screen reader speaks.
template <typename W> W* named(W* widget, const char* objectName, const QString& accessibleName) {
    widget->setObjectName(objectName);
    widget->setAccessibleName(accessibleName);
    return widget;
}

} // namespace nv
