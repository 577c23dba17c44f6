#pragma once

#include <QColor>
#include <QPushButton>

class QPainter;

namespace nv {

// A push button whose caption wraps over its lines, anywhere if it must, as a long folder path
// does; a plain button would cut it off.
class WrappingButton : public QPushButton {
public:
    using QPushButton::QPushButton;

    // Paints the button flat in this colour, exactly, whatever the style would make of it, with
    // a black caption; disabled, the face pales and the caption goes grey, still readable.
    void setFace(const QColor& face);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintFace(QPainter& painter) const;

    QColor face_;
};

} // namespace nv
