#pragma once

#include <string>

namespace nv {

// The file-open dialog: one file per use, no filter.
class FileDialogs {
public:
    virtual ~FileDialogs() = default;
    // Shows the dialog with this title, starting in initDir (drive form). Returns the chosen
    // file's full path in drive form, or "" when the user cancelled.
    virtual std::string showOpen(const std::string& title, const std::string& initDir) = 0;
};

} // namespace nv
