#pragma once

#include <QPushButton>

namespace nv {

// A push button whose caption wraps over its lines, anywhere if it must, as a long folder path
// does; a plain button would cut it off.
class WrappingButton : public QPushButton {
public:
    using QPushButton::QPushButton;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace nv
