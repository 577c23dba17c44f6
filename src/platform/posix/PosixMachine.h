#pragma once

#include "platform/Clock.h"
#include "platform/Process.h"
#include "platform/SpecialFolders.h"
#include "platform/posix/DriveTable.h"

namespace nv {

// 26 is $XDG_CONFIG_HOME (or ~/.config), 28 $XDG_DATA_HOME (or ~/.local/share), 38 /opt.
class PosixSpecialFolders : public SpecialFolders {
public:
    explicit PosixSpecialFolders(DriveTable& drives) : drives_(drives) {}
    std::string folder(int csidl) override;

private:
    DriveTable& drives_;
};

class PosixClock : public Clock {
public:
    Date today() override;
    Moment now() override;
};

class PosixProcess : public Process {
public:
    explicit PosixProcess(DriveTable& drives) : drives_(drives) {}
    std::string appPath() override;

private:
    DriveTable& drives_;
};

} // namespace nv
