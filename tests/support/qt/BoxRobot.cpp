#include "support/qt/BoxRobot.h"

#include "platform/Platform.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <gtest/gtest.h>

namespace nvtest {

BoxRobot::BoxRobot() : saved_(nv::platform().boxes) {
    nv::platform().boxes = &boxes_;
    connect(&timer_, &QTimer::timeout, this, &BoxRobot::look);
    timer_.start(5);
}

BoxRobot::~BoxRobot() {
    nv::platform().boxes = saved_;
}

std::vector<QString> BoxRobot::titles() const {
    std::vector<QString> result;
    for (const Seen& box : seen)
        result.push_back(box.title);
    return result;
}

void BoxRobot::look() {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box || box == answered_ || !box->isVisible())
        return;
    QAbstractButton* press = box->defaultButton();
    if (!answers_.empty() && !answers_.front().isEmpty()) {
        press = nullptr;
        for (QAbstractButton* button : box->buttons())
            if (button->text().remove('&') == answers_.front())
                press = button;
        if (!press) {
            ADD_FAILURE() << "no button " << answers_.front().toStdString() << " in the box "
                          << box->windowTitle().toStdString();
            press = box->defaultButton();
        }
    }
    if (!answers_.empty())
        answers_.pop_front();
    answered_ = box;
    seen.push_back({box->windowTitle(), box->text(), press->text().remove('&')});
    press->click();
}

} // namespace nvtest
