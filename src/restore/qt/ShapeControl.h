#pragma once

#include "platform/qt/QtControl.h"

#include <QWidget>

namespace nv {

// A red outline, square or round, painted under the controls around it and taking no input.
class ShapeControl : public QWidget {
    Q_OBJECT
public:
    explicit ShapeControl(QWidget* parent = nullptr);

    int kind() const { return kind_; }
    void setKind(int kind);
    int paints() const { return paints_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int kind_ = Shape::kRectangle;
    int paints_ = 0;
};

class QtShape : public QtControl<Shape> {
public:
    explicit QtShape(ShapeControl* shape) : QtControl(shape), shape_(shape) {}
    int kind() const override { return shape_->kind(); }
    void setKind(int kind) override { shape_->setKind(kind); }
    void repaint() override { shape_->repaint(); }

private:
    ShapeControl* shape_;
};

} // namespace nv
