#pragma once

#include "platform/Shell.h"

namespace nv {

// Opens files through the desktop's own handlers. An internet shortcut (.url) is read before
// this returns, since its writer may delete it at once, and its address is opened instead.
class QtShell : public Shell {
public:
    void open(const std::string& path) override;
};

} // namespace nv
