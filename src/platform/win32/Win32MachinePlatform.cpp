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
    Platform p;
    p.files = &files;
    p.profiles = &profiles;
    p.folders = &folders;
    p.clock = &clock;
    p.drives = &drives;
    p.process = &process;
    p.shell = &shell;
    return p;
}

} // namespace nv
