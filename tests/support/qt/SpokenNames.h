#pragma once

#include <QAbstractButton>
#include <QAccessible>
#include <QGroupBox>
#include <QLabel>
#include <QWidget>
#include <string>
#include <vector>

namespace nvtest {

// The shown controls of a window whose name for a screen reader does not fit what they show,
// each as "objectName: name / shown": a label or button is named by its text, a frame by its
// title, and a label that shows nothing at all would be spoken by a name it borrows.
inline std::vector<std::string> namesNotFittingWhatTheyShow(QWidget& window) {
    std::vector<std::string> wrong;
    auto check = [&](QWidget* widget, const QString& shown) {
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(widget);
        const QString name = spoken ? spoken->text(QAccessible::Name) : QString();
        if (name != shown)
            wrong.push_back(widget->objectName().toStdString() + ": " + name.toStdString() + " / " +
                            shown.toStdString());
    };
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window))
            continue;
        if (auto* label = qobject_cast<QLabel*>(widget);
            label && label->pixmap().isNull() && !label->movie())
            check(label, label->text());
        else if (auto* button = qobject_cast<QAbstractButton*>(widget))
            check(button, QString(button->text()).remove('&'));
        else if (auto* frame = qobject_cast<QGroupBox*>(widget))
            check(frame, frame->title());
    }
    return wrong;
}

} // namespace nvtest
