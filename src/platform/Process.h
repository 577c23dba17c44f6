#pragma once

#include <string>

namespace nv {

// What the running process knows of itself.
class Process {
public:
    virtual ~Process() = default;
    // Folder of the running program in drive form, no trailing backslash except at a root.
    virtual std::string appPath() = 0;
};

} // namespace nv
