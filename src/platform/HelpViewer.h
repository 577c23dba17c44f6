#pragma once

#include <string>

namespace nv {

// Shows the program's help file, on the page for the window or step in hand where it can.
class HelpViewer {
public:
    virtual ~HelpViewer() = default;
    // nativePath names a file that exists; false when it cannot be read as a help file.
    virtual bool show(const std::string& nativePath) = 0;
};

} // namespace nv
