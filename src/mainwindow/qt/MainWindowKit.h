#pragma once

#include <QFont>
#include <QString>
#include <string>

namespace nv {

// What the main window's files share in filling their controls.

inline QString fromStd(const std::string& text) {
    return QString::fromStdString(text);
}

// The program's sans-serif face at a size in points.
QFont sansFont(double points, bool bold = false);

} // namespace nv
