#pragma once

#include <QAbstractButton>
#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace nv {

// An underlined address that a click, Space or Enter opens; a button to a screen reader.
class MailLink : public QAbstractButton {
public:
    explicit MailLink(QWidget* parent = nullptr);
    QColor colour() const { return colour_; }
    void setColour(const QColor& colour);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor colour_;
};

// What the tool is, its version, and where to mail with questions.
class FrmAbout : public QDialog {
    Q_OBJECT
public:
    explicit FrmAbout(QWidget* parent = nullptr);

    void Form_Load();
    void cmdOK_Click();
    void LblMail_Click();

    QLabel* Image1;
    QLabel* lblTitle;
    QLabel* lblVersion;
    QLabel* lblDescription;
    QWidget* Line1_1;
    QWidget* Line1_0;
    QLabel* lblDisclaimer;
    QLineEdit* TxtInfo;
    MailLink* LblMail;
    QPushButton* cmdOK;
};

extern const char* const kSupportAddress;

} // namespace nv
