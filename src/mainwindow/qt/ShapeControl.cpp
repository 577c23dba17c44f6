#include "mainwindow/qt/ShapeControl.h"

#include <QPainter>

namespace nv {

ShapeControl::ShapeControl(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
}

void ShapeControl::setCircle(bool circle) {
    circle_ = circle;
    update();
}

void ShapeControl::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(QColor(255, 0, 0));
    pen.setWidth(3);
    painter.setPen(pen);
    QRectF area = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    if (circle_)
        painter.drawEllipse(area);
    else
        painter.drawRect(area);
}

} // namespace nv
