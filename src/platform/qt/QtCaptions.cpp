#include "platform/qt/QtCaptions.h"

#include <QAbstractButton>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>

namespace nv {

QtLabel::QtLabel(QWidget* widget) : QtControl(widget) {
    if (auto* link = qobject_cast<QAbstractButton*>(widget))
        connect(link, &QAbstractButton::clicked, this, [this] {
            if (Click)
                Click();
        });
    else
        widget->installEventFilter(this);
}

std::string QtLabel::caption() const {
    if (auto* label = qobject_cast<QLabel*>(widget_))
        return label->text().toStdString();
    if (auto* frame = qobject_cast<QGroupBox*>(widget_))
        return frame->title().toStdString();
    if (auto* link = qobject_cast<QAbstractButton*>(widget_))
        return link->text().toStdString();
    return caption_;
}

void QtLabel::setCaption(const std::string& caption) {
    if (auto* label = qobject_cast<QLabel*>(widget_))
        label->setText(qt(caption));
    else if (auto* frame = qobject_cast<QGroupBox*>(widget_))
        frame->setTitle(qt(caption));
    else if (auto* link = qobject_cast<QAbstractButton*>(widget_)) {
        link->setText(qt(caption));
        link->setAccessibleName(qt(caption));
    } else
        caption_ = caption;
    if (autoSize_)
        widget_->adjustSize();
}

void QtLabel::setForeColor(Rgb colour) {
    QPalette palette = widget_->palette();
    palette.setColor(QPalette::WindowText, QColor(colour.red, colour.green, colour.blue));
    widget_->setPalette(palette);
}

bool QtLabel::eventFilter(QObject* watched, QEvent* event) {
    if (watched == widget_ && event->type() == QEvent::MouseButtonPress && Click &&
        !widget_->childAt(static_cast<QMouseEvent*>(event)->position().toPoint())) {
        Click();
        return true;
    }
    return false;
}

QtTextBox::QtTextBox(QLineEdit* edit) : QtControl(edit), edit_(edit) {}

std::string QtTextBox::text() const {
    return edit_->text().toStdString();
}

void QtTextBox::setText(const std::string& text) {
    edit_->setText(qt(text));
}

QtButton::QtButton(QAbstractButton* button) : QtControl(button), button_(button) {
    connect(button, &QAbstractButton::clicked, this, [this] {
        if (Click)
            Click();
    });
}

std::string QtButton::caption() const {
    return button_->text().toStdString();
}

void QtButton::setCaption(const std::string& caption) {
    button_->setText(qt(caption));
}

} // namespace nv
