#include "platform/qt/SansFont.h"

#include <QApplication>

namespace nv {

QFont sansFont(double points, bool bold) {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    font.setBold(bold);
    return font;
}

} // namespace nv
