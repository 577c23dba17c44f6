#pragma once

#include <string>

namespace nv {

enum Csidl : int {
    CSIDL_APPDATA = 26,
    CSIDL_LOCAL_APPDATA = 28,
    CSIDL_PROGRAM_FILES = 38,
};

class SpecialFolders {
public:
    virtual ~SpecialFolders() = default;
    // Drive-form path without trailing backslash, or "" when the platform has none.
    virtual std::string folder(int csidl) = 0;
};

} // namespace nv
