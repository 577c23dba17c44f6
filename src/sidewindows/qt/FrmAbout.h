#pragma once

#include <QDialog>

class QLabel;
class QLineEdit;
class QPushButton;

namespace nv {

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
    QLabel* LblMail;
    QPushButton* cmdOK;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

extern const char* const kSupportAddress;

} // namespace nv
