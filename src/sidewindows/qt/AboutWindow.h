#pragma once

#include "platform/qt/QtCaptions.h"
#include "platform/qt/QtWindow.h"
#include "sidewindows/FrmAbout.h"

#include <QAbstractButton>
#include <QDialog>

namespace nv {

// An underlined address in its text colour that a click, Space or Enter opens; a button to a
// screen reader.
class MailLink : public QAbstractButton {
public:
    explicit MailLink(QWidget* parent = nullptr);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};

// frmAbout on the screen: a modal dialog with only a close button in its caption.
class AboutWindow : public QDialog, public FormFace<frmAbout> {
    Q_OBJECT
public:
    AboutWindow();
    frmAbout& form() override { return form_; }

private:
    QtWindow me_;
    QtLabel title_, version_, description_, disclaimer_;
    QtTextBox info_;
    QtLabel mail_;
    QtButton ok_;
    frmAbout form_;
};

} // namespace nv
