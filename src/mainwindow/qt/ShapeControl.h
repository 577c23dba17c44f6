#pragma once

#include <QWidget>

namespace nv {

// A red outline, square or round, that lets the mouse through to what lies under it.
class ShapeControl : public QWidget {
public:
    explicit ShapeControl(QWidget* parent = nullptr);

    bool circle() const { return circle_; }
    void setCircle(bool circle);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    bool circle_ = false;
};

} // namespace nv
