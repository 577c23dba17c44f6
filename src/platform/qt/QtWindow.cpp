#include "platform/qt/QtWindow.h"

#include <QCoreApplication>
#include <QDialog>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPointer>

namespace nv {

QtWindow::QtWindow(QWidget* window, QWidget* client)
    : QtControl(window), client_(client ? client : window) {
    window->installEventFilter(this);
}

// The frame's corner, as a move puts it, and the widget's own size.
QRect QtWindow::pixels() const {
    return QRect(widget_->pos(), widget_->size());
}

void QtWindow::setPixels(const QRect& pixels) {
    if (pixels.topLeft() != widget_->pos())
        widget_->move(pixels.topLeft());
    if (pixels.size() != widget_->size())
        widget_->resize(pixels.size());
}

std::string QtWindow::caption() const {
    return widget_->windowTitle().toStdString();
}

void QtWindow::setCaption(const std::string& caption) {
    widget_->setWindowTitle(qt(caption));
    widget_->setAccessibleName(qt(caption));
}

int QtWindow::innerWidth() const {
    return pixelsToTwips(client_->width());
}

WindowState QtWindow::state() const {
    if (widget_->isMinimized())
        return WindowState::Minimized;
    if (widget_->isMaximized() || widget_->isFullScreen())
        return WindowState::Maximized;
    return WindowState::Normal;
}

void QtWindow::show() {
    widget_->show();
}

void QtWindow::showModal() {
    if (auto* dialog = qobject_cast<QDialog*>(widget_)) {
        dialog->exec();
        return;
    }
    QPointer<QWidget> window = widget_;
    window->setWindowModality(Qt::ApplicationModal);
    window->show();
    while (window && window->isVisible())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

void QtWindow::close() {
    closing_ = true;
    widget_->close();
    closing_ = false;
}

void QtWindow::repaint() {
    widget_->repaint();
}

bool QtWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != widget_)
        return false;
    switch (event->type()) {
    case QEvent::Resize:
        if (Resize)
            Resize();
        return false;
    case QEvent::KeyPress:
        if (!KeyPress || static_cast<QKeyEvent*>(event)->text().isEmpty())
            return false;
        KeyPress();
        return true;
    case QEvent::Close:
        if (!refuseOutside_ || closing_)
            return false;
        event->ignore();
        return true;
    default:
        return false;
    }
}

} // namespace nv
