#pragma once

#include "platform/qt/QtControl.h"

class QAbstractButton;
class QLineEdit;

namespace nv {

// A label over a QLabel, a frame's caption over a QGroupBox, a link over a button (spoken by its
// caption), or a plain frame that shows no caption. Click comes for a press on the control's own
// surface, not on a control inside it.
class QtLabel : public QtControl<Label> {
public:
    explicit QtLabel(QWidget* widget);

    std::string caption() const override;
    void setCaption(const std::string& caption) override;
    void setForeColor(Rgb colour) override;
    // The label takes the size of its caption whenever the caption changes.
    void setAutoSize(bool autoSize) { autoSize_ = autoSize; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    std::string caption_;
    bool autoSize_ = false;
};

class QtTextBox : public QtControl<TextBox> {
public:
    explicit QtTextBox(QLineEdit* edit);
    std::string text() const override;
    void setText(const std::string& text) override;

private:
    QLineEdit* edit_;
};

class QtButton : public QtControl<Button> {
public:
    explicit QtButton(QAbstractButton* button);
    std::string caption() const override;
    void setCaption(const std::string& caption) override;

private:
    QAbstractButton* button_;
};

} // namespace nv
