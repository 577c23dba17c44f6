#pragma once

#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/Process.h"
#include "platform/Shell.h"
#include "platform/SpecialFolders.h"

namespace nv {

class Win32SpecialFolders : public SpecialFolders {
public:
    std::string folder(int csidl) override;
};

class Win32Clock : public Clock {
public:
    Date today() override;
    Moment now() override;
};

class Win32Drives : public Drives {
public:
    std::vector<DriveInfo> list() override;
    bool ready(char letter) override;
};

class Win32Process : public Process {
public:
    std::string appPath() override;
};

class Win32Shell : public Shell {
public:
    void open(const std::string& path) override;
};

} // namespace nv
