#pragma once

#include "platform/HelpViewer.h"

namespace nv {

// The help file in the system's help viewer.
class Win32HelpViewer : public HelpViewer {
public:
    ~Win32HelpViewer() override;
    bool show(const std::string& nativePath) override;
};

} // namespace nv
