#include "mainwindow/qt/SelectedFilesList.h"

namespace nv {

void SelectedFilesList::focusInEvent(QFocusEvent* event) {
    const bool hadCurrent = currentIndex().isValid();
    QListWidget::focusInEvent(event);
    // The view makes its first row current on focus; the arrow keys still start from the top.
    if (!hadCurrent && currentIndex().isValid())
        selectionModel()->setCurrentIndex(QModelIndex(), QItemSelectionModel::NoUpdate);
}

} // namespace nv
