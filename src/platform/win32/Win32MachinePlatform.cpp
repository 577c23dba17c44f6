#include "platform/Platform.h"
#include "platform/win32/Win32FileSystem.h"
#include "platform/win32/Win32Machine.h"
#include "platform/win32/Win32ProfileStore.h"

namespace nv {

Platform nativePlatform() {
    static Win32FileSystem files;
    static Win32ProfileStore profiles;
    static Win32SpecialFolders folders;
    static Win32Clock clock;
    static Win32Drives drives;
    static Win32Process process;
    static Win32Shell shell;
    return Platform{.files = &files,
                    .profiles = &profiles,
                    .folders = &folders,
                    .clock = &clock,
                    .drives = &drives,
                    .process = &process,
                    .shell = &shell};
}

} // namespace nv
