#pragma once

#include "platform/qt/QtControl.h"

#include <QComboBox>
#include <functional>

class QListWidget;

namespace nv {

// A list over a QListWidget. DblClick comes once the view is done with the clicked row, since
// the logic may rebuild the list; KeyDown comes with the key codes and shift states of
// Controls.h, for the keys that have one.
class QtListBox : public QtControl<ListBox> {
public:
    explicit QtListBox(QListWidget* list);

    int count() const override;
    std::string list(int row) const override;
    void addItem(const std::string& text, RowIcon icon = RowIcon::None) override;
    void removeItem(int row) override;
    void clear() override;
    bool selected(int row) const override;
    void setSelected(int row, bool selected) override;
    int listIndex() const override;
    void setListIndex(int row) override;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QListWidget* list_;
};

// A drop-down list that says when it is about to open.
class DropDownList : public QComboBox {
public:
    using QComboBox::QComboBox;
    std::function<void()> aboutToOpen;

protected:
    void showPopup() override;
};

class QtComboBox : public QtControl<ComboBox> {
public:
    explicit QtComboBox(DropDownList* box);

    int count() const override;
    std::string list(int row) const override;
    void addItem(const std::string& text) override;
    void clear() override;
    int listIndex() const override;
    void setListIndex(int row) override;

private:
    DropDownList* box_;
    // Set while the logic changes the list, whose moves are no choice of the user's.
    bool fromLogic_ = false;
};

} // namespace nv
