#pragma once

#include "startup/Main.h"

#include <QPointer>
#include <QWidget>

namespace nv {

// Brings up the windows of the start; until the main window is built, a plain stand-in.
class QtStartWindows : public StartWindows {
public:
    void loadMainWindow() override;
    void showMainWindow() override;
    void loadSplash() override {}
    void showSplash() override {}

    QWidget* mainWindow() const { return main_; }

private:
    QPointer<QWidget> main_;
};

} // namespace nv
