#pragma once

#include "platform/HelpViewer.h"
#include "platform/qt/HelpWindow.h"

#include <QPointer>

namespace nv {

// The help file in the program's help window, one window for every F1. Over a modal window, such
// as About, the help is modal too, or it could not be used.
class QtHelpViewer : public HelpViewer {
public:
    ~QtHelpViewer() override;
    bool show(const std::string& nativePath) override;

    // The help window while it stands.
    HelpWindow* window() const { return window_; }

private:
    QPointer<HelpWindow> window_;
};

} // namespace nv
