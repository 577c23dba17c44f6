#include "platform/Platform.h"

#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#include "platform/posix/PosixMachine.h"
#include "platform/posix/PosixProfileStore.h"

namespace nv {

Platform nativePlatform() {
    // One table for every piece, so a letter means the same folder to all of them.
    static DriveTable drives(DriveTable::fromEnvironment());
    static PosixFileSystem files(drives);
    static PosixProfileStore profiles(drives);
    static PosixSpecialFolders folders(drives);
    static PosixClock clock;
    static PosixProcess process(drives);
    Platform p;
    p.files = &files;
    p.profiles = &profiles;
    p.folders = &folders;
    p.clock = &clock;
    p.drives = &drives;
    p.process = &process;
    return p;
}

} // namespace nv
