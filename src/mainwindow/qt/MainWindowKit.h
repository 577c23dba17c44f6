#pragma once

#include <QString>
#include <string>

namespace nv {

// What the main window's files share in filling their controls.

inline QString fromStd(const std::string& text) {
    return QString::fromStdString(text);
}

} // namespace nv
