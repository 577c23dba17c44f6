#pragma once

#include "platform/Platform.h"
#include "platform/qt/QtMessageBoxes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTimer>
#include <deque>
#include <gtest/gtest.h>
#include <ostream>
#include <vector>

// Lets failing expectations show texts as text.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace nvtest {

// A user at the real message boxes: every box that comes up is read and answered by the text
// of one of its buttons, or by its default button when no answer is queued. Installs the
// program's own boxes in the platform for its lifetime.
class BoxRobot {
public:
    struct Seen {
        QString title, text, pressed;
    };

    BoxRobot() {
        QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { look(); });
        timer_.start(5);
    }

    // The next box is answered with this button; "" takes its default button.
    void answer(const QString& buttonText) { answers_.push_back(buttonText); }
    std::vector<QString> titles() const {
        std::vector<QString> result;
        for (const Seen& box : seen)
            result.push_back(box.title);
        return result;
    }

    std::vector<Seen> seen;

private:
    void look() {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || box == answered_ || !box->isVisible())
            return;
        const QString wanted = answers_.empty() ? QString() : answers_.front();
        if (!answers_.empty())
            answers_.pop_front();
        QAbstractButton* press = box->defaultButton();
        for (QAbstractButton* button : box->buttons())
            if (!wanted.isEmpty() && button->text().remove('&') == wanted)
                press = button;
        EXPECT_TRUE(wanted.isEmpty() || press->text().remove('&') == wanted)
            << "no button " << wanted.toStdString() << " in the box "
            << box->windowTitle().toStdString();
        answered_ = box;
        seen.push_back({box->windowTitle(), box->text(), press->text().remove('&')});
        press->click();
    }

    nv::QtMessageBoxes boxes_;
    nv::ScopedPlatformPart<nv::MessageBoxes> installed_{&nv::Platform::boxes, &boxes_};
    QTimer timer_;
    QPointer<QMessageBox> answered_;
    std::deque<QString> answers_;
};

} // namespace nvtest
