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
    return Platform{.files = &files,
                    .profiles = &profiles,
                    .folders = &folders,
                    .clock = &clock,
                    .drives = &drives,
                    .process = &process};
}

} // namespace nv
