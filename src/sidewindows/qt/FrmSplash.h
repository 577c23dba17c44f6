#pragma once

#include "platform/Clock.h"

#include <QFrame>

class QLabel;
class QTimer;

namespace nv {

// The start-up picture over the main window; it goes after two seconds, on a key or on a click
// on its frame.
class FrmSplash : public QFrame {
    Q_OBJECT
public:
    explicit FrmSplash(QWidget* parent = nullptr);

    void Form_Load();
    void Form_KeyPress();
    void Frame1_Click();
    void Timer1_Timer();

    Moment closingTime() const { return closingTime_; }

    QFrame* Frame1;
    QLabel* Image2;
    QLabel* Image1;
    QLabel* lblCopyright;
    QLabel* lblProductName;
    QLabel* lblVersion;
    QTimer* Timer1;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Moment closingTime_ = 0;
};

// The copyright line of the splash and the About window.
extern const char* const kCopyrightLine;

} // namespace nv
