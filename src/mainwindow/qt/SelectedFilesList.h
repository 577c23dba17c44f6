#pragma once

#include <QListWidget>

namespace nv {

// The list of files to back up. A row becomes current only when the user chooses it: focus
// arriving by Tab or by the window's activation leaves the list without a current row, so that
// "Verwijder bestand uit lijst" never asks about a row nobody picked.
class SelectedFilesList : public QListWidget {
public:
    using QListWidget::QListWidget;

protected:
    void focusInEvent(QFocusEvent* event) override;
};

} // namespace nv
