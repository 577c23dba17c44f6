#include "restore/qt/ShapeControl.h"

#include <QPainter>

namespace nv {

ShapeControl::ShapeControl(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
}

void ShapeControl::setKind(int kind) {
    kind_ = kind;
    update();
}

void ShapeControl::paintEvent(QPaintEvent*) {
    ++paints_;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(QColor(255, 0, 0));
    pen.setWidth(3);
    painter.setPen(pen);
    QRectF area = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    if (kind_ == Shape::kCircle)
        painter.drawEllipse(area);
    else
        painter.drawRect(area);
}

} // namespace nv
