#pragma once

#include "win32/Win32Control.h"

namespace nv::win32 {

class Win32ProgressBar : public Win32Control<ProgressBar> {
public:
    using Win32Control::Win32Control;
    int max() const override;
    void setMax(int maximum) override;
    int value() const override;
    void setValue(int value) override;
};

// An ANIMATE_CLASS control; it plays on a thread of its own while the window's thread works.
class Win32Animation : public Win32Control<Animation> {
public:
    using Win32Control::Win32Control;
    std::string clipFileName() const override { return "FILECOPY.AVI"; }
    bool open(const std::string& path) override;
    void play() override;
    void stop() override;
};

} // namespace nv::win32
