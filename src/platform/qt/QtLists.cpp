#include "platform/qt/QtLists.h"

#include <QKeyEvent>
#include <QListWidget>
#include <QStyle>
#include <QTimer>

namespace nv {

namespace {

// The key codes of Controls.h, which letters, digits and the space share with Qt; 0 for a key
// the forms have no code for.
int keyCodeOf(int key) {
    if ((key >= Qt::Key_A && key <= Qt::Key_Z) || (key >= Qt::Key_0 && key <= Qt::Key_9) ||
        key == Qt::Key_Space)
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return kKeyF1 + (key - Qt::Key_F1);
    return key == Qt::Key_Return || key == Qt::Key_Enter ? kKeyReturn : 0;
}

int shiftOf(Qt::KeyboardModifiers modifiers) {
    return (modifiers & Qt::ShiftModifier ? kShiftMask : 0) |
           (modifiers & Qt::ControlModifier ? kCtrlMask : 0) |
           (modifiers & Qt::AltModifier ? kAltMask : 0);
}

} // namespace

QtListBox::QtListBox(QListWidget* list) : QtControl(list), list_(list) {
    list->installEventFilter(this);
    connect(list, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) {
        const int row = list_->row(item);
        QTimer::singleShot(0, this, [this, row] {
            if (DblClick)
                DblClick(row);
        });
    });
}

int QtListBox::count() const {
    return list_->count();
}

std::string QtListBox::list(int row) const {
    return list_->item(row)->text().toStdString();
}

void QtListBox::addItem(const std::string& text, RowIcon icon) {
    auto* item = new QListWidgetItem(qt(text));
    if (icon != RowIcon::None)
        item->setIcon(list_->style()->standardIcon(
            icon == RowIcon::OpenFolder ? QStyle::SP_DirOpenIcon : QStyle::SP_DirClosedIcon));
    list_->addItem(item);
}

void QtListBox::removeItem(int row) {
    delete list_->takeItem(row);
}

void QtListBox::clear() {
    list_->clear();
}

bool QtListBox::selected(int row) const {
    return list_->item(row)->isSelected();
}

void QtListBox::setSelected(int row, bool selected) {
    list_->item(row)->setSelected(selected);
}

int QtListBox::listIndex() const {
    return list_->currentRow();
}

void QtListBox::setListIndex(int row) {
    // In a list of one choice the current row is the chosen one; in a list of many the current
    // row leaves the choice as it is.
    list_->setCurrentRow(row, list_->selectionMode() == QAbstractItemView::SingleSelection
                                  ? QItemSelectionModel::ClearAndSelect
                                  : QItemSelectionModel::NoUpdate);
}

bool QtListBox::eventFilter(QObject* watched, QEvent* event) {
    if (watched == list_ && event->type() == QEvent::KeyPress && KeyDown) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (int code = keyCodeOf(key->key()))
            KeyDown(code, shiftOf(key->modifiers()));
    }
    return false;
}

void DropDownList::showPopup() {
    if (aboutToOpen)
        aboutToOpen();
    QComboBox::showPopup();
}

QtComboBox::QtComboBox(DropDownList* box) : QtControl(box), box_(box) {
    box->aboutToOpen = [this] {
        if (DropDown)
            DropDown();
    };
    connect(box, &QComboBox::currentIndexChanged, this, [this] {
        if (!fromLogic_ && Click)
            Click();
    });
}

int QtComboBox::count() const {
    return box_->count();
}

std::string QtComboBox::list(int row) const {
    return box_->itemText(row).toStdString();
}

void QtComboBox::addItem(const std::string& text) {
    fromLogic_ = true;
    box_->addItem(qt(text));
    fromLogic_ = false;
}

void QtComboBox::clear() {
    fromLogic_ = true;
    box_->clear();
    fromLogic_ = false;
}

int QtComboBox::listIndex() const {
    return box_->currentIndex();
}

void QtComboBox::setListIndex(int row) {
    fromLogic_ = true;
    box_->setCurrentIndex(row);
    fromLogic_ = false;
}

} // namespace nv
