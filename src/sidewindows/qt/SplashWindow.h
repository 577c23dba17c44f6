#pragma once

#include "platform/qt/QtCaptions.h"
#include "platform/qt/QtTimerAndMenu.h"
#include "platform/qt/QtWindow.h"
#include "sidewindows/FrmSplash.h"

#include <QFrame>

namespace nv {

// frmSplash on the screen: a frameless picture in the middle of the screen, out of the task bar,
// that takes the keyboard when shown. It deletes itself once closed.
class SplashWindow : public QFrame, public FormFace<frmSplash> {
    Q_OBJECT
public:
    SplashWindow();
    frmSplash& form() override { return form_; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    QtWindow me_;
    QtLabel frame_, copyright_, productName_, version_;
    QtTimer timer_;
    frmSplash form_;
};

} // namespace nv
