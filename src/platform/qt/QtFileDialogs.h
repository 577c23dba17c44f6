#pragma once

#include "platform/FileDialogs.h"

namespace nv {

// The file-open dialog as a Qt dialog; the only place that makes a QFileDialog.
class QtFileDialogs : public FileDialogs {
public:
    std::string showOpen(const std::string& title, const std::string& initDir) override;
};

} // namespace nv
