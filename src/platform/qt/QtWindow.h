#pragma once

#include "platform/qt/QtControl.h"

namespace nv {

// A window over its top-level widget: its place on the screen, its height as the widget counts
// it (menu and status bar included), and the width of its client widget.
class QtWindow : public QtControl<Window> {
public:
    explicit QtWindow(QWidget* window, QWidget* client = nullptr);

    std::string caption() const override;
    void setCaption(const std::string& caption) override;
    int innerWidth() const override;
    WindowState state() const override;
    void show() override;
    void showModal() override;
    void close() override;
    void repaint() override;

    // Only close() closes the window; the close box and the window system are refused.
    void refuseCloseFromOutside() { refuseOutside_ = true; }

protected:
    QRect pixels() const override;
    void setPixels(const QRect& pixels) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* client_;
    bool refuseOutside_ = false;
    bool closing_ = false;
};

} // namespace nv
