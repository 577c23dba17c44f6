#pragma once

#include <QWidget>

namespace nv {

// A red outline, square or round, painted under the controls around it and taking no input.
// Its place and size are kept in twips, so a glide of whole twips never drifts by rounding.
class ShapeControl : public QWidget {
public:
    enum Kind { Rectangle = 0, Circle = 3 };

    explicit ShapeControl(QWidget* parent = nullptr);

    int shapeKind() const { return kind_; }
    void setShapeKind(int kind);

    int leftTwips() const { return left_; }
    int topTwips() const { return top_; }
    int widthTwips() const { return width_; }
    int heightTwips() const { return height_; }
    void setTwips(int left, int top, int width, int height);
    void moveTwips(int left, int top);

    int paints() const { return paints_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int kind_ = Rectangle;
    int left_ = 0, top_ = 0, width_ = 0, height_ = 0;
    int paints_ = 0;
};

} // namespace nv
