#pragma once

#include "backup/FrmCopy.h"
#include "platform/qt/QtCaptions.h"
#include "platform/qt/QtProgress.h"
#include "platform/qt/QtWindow.h"

#include <QWidget>

namespace nv {

// Frm_Copy on the screen, over the window that started the copy: no button and no close box,
// and a close from outside is refused until the form unloads it.
class CopyWindow : public QWidget, public FormFace<Frm_Copy> {
    Q_OBJECT
public:
    explicit CopyWindow(QWidget* owner);
    Frm_Copy& form() override { return form_; }

private:
    QtWindow me_;
    QtAnimation animation_;
    QtProgressBar progress_;
    QtTextBox text_;
    QtLabel label_;
    Frm_Copy form_;
};

} // namespace nv
