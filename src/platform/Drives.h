#pragma once

#include <string>
#include <vector>

namespace nv {

struct DriveInfo {
    char letter = 'C';    // upper case
    std::string root;     // where the drive lives on this machine (native form)
    std::string label;    // volume label, "" when the file system has none
    bool mounted = false; // a mounted file system rather than a plain folder
};

class Drives {
public:
    virtual ~Drives() = default;
    // The drives of this machine in letter order, read afresh.
    virtual std::vector<DriveInfo> list() = 0;
    // True while the drive of that letter can be read.
    virtual bool ready(char letter) = 0;
};

} // namespace nv
