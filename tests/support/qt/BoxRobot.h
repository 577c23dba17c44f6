#pragma once

#include "platform/qt/QtMessageBoxes.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <deque>
#include <ostream>
#include <vector>

class QMessageBox;

// Lets failing expectations show texts as text.
inline void PrintTo(const QString& text, std::ostream* out) {
    *out << '"' << text.toStdString() << '"';
}

namespace nvtest {

// A user at the real message boxes: every box that comes up is read and answered by the text
// of one of its buttons, or by its default button when no answer is queued. Installs the
// program's own boxes in the platform for its lifetime.
class BoxRobot : public QObject {
public:
    struct Seen {
        QString title;
        QString text;
        QString pressed;
    };

    BoxRobot();
    ~BoxRobot() override;

    // The next box is answered with this button; "" takes its default button.
    void answer(const QString& buttonText) { answers_.push_back(buttonText); }
    // The titles of the boxes seen so far.
    std::vector<QString> titles() const;

    std::vector<Seen> seen;

private:
    void look();

    nv::QtMessageBoxes boxes_;
    nv::MessageBoxes* saved_;
    QTimer timer_;
    QPointer<QMessageBox> answered_;
    std::deque<QString> answers_;
};

} // namespace nvtest
