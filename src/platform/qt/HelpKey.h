#pragma once

#include <QObject>

namespace nv {

// F1 in any window of the program opens the help file of App.HelpFile.
class HelpKey : public QObject {
public:
    using QObject::QObject;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace nv
