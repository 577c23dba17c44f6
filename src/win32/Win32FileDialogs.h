#pragma once

#include "platform/FileDialogs.h"

namespace nv {

// The system's file-open dialog.
class Win32FileDialogs : public FileDialogs {
public:
    std::string showOpen(const std::string& title, const std::string& initDir) override;
};

} // namespace nv
