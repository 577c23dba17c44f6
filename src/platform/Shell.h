#pragma once

#include <string>

namespace nv {

// Hands a file to the program the machine has for it, and returns at once.
class Shell {
public:
    virtual ~Shell() = default;
    // path is in drive form. Nothing is reported: a machine without such a program stays quiet.
    virtual void open(const std::string& path) = 0;
};

} // namespace nv
