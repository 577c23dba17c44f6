#include "restore/qt/ShapeControl.h"

#include "platform/qt/Twips.h"

#include <QPainter>

namespace nv {

ShapeControl::ShapeControl(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setAttribute(Qt::WA_NoSystemBackground);
}

void ShapeControl::setShapeKind(int kind) {
    kind_ = kind;
    update();
}

void ShapeControl::setTwips(int left, int top, int width, int height) {
    left_ = left;
    top_ = top;
    width_ = width;
    height_ = height;
    setGeometry(twipsRect(left, top, width, height));
}

void ShapeControl::moveTwips(int left, int top) {
    left_ = left;
    top_ = top;
    move(twips(left), twips(top));
}

void ShapeControl::paintEvent(QPaintEvent*) {
    ++paints_;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QPen pen(QColor(255, 0, 0));
    pen.setWidth(3);
    painter.setPen(pen);
    QRectF area = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    if (kind_ == Circle)
        painter.drawEllipse(area);
    else
        painter.drawRect(area);
}

} // namespace nv
