#include "platform/Platform.h"
#include "production/KnownFile.h"
#include "startup/Main.h"
#include "startup/OpenHelp.h"
#include "win32/MessageLoop.h"
#include "win32/StartWindows.h"
#include "win32/Win32FileDialogs.h"
#include "win32/Win32HelpViewer.h"
#include "win32/Win32MessageBoxes.h"
#include "win32/Win32SingleInstance.h"
#include "win32/WindowProcedure.h"

#include <commctrl.h>
#include <objbase.h>

int WINAPI WinMain(HINSTANCE, HINSTANCE, LPSTR, int) {
    INITCOMMONCONTROLSEX common{sizeof common, ICC_WIN95_CLASSES | ICC_ANIMATE_CLASS};
    InitCommonControlsEx(&common);
    // For the screen readers' names of the lists.
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    // The program speaks Dutch on any machine, in the system's own boxes too.
    SetThreadUILanguage(MAKELANGID(LANG_DUTCH, SUBLANG_DUTCH));

    nv::Win32MessageBoxes boxes;
    nv::Win32FileDialogs dialogs;
    nv::Platform machine = nv::nativePlatform();
    machine.boxes = &boxes;
    machine.dialogs = &dialogs;
    nv::ScopedPlatform installed(machine);

    nv::Win32HelpViewer viewer;
    nv::win32::keyRoutes().help = [&viewer] { nv::subOpenHelp(viewer); };

    try {
        // Before anything is read or moved: a second program on the same settings would undo
        // the first one's edits of the list.
        nv::Win32SingleInstance instance(nv::settingsFileOfThisStart());
        if (!nv::goOnAsOnlyStart(instance))
            return 0;
        nv::win32::Win32StartWindows windows(
            [&instance](HWND main) { instance.markMainWindow(main); });
        if (nv::Main(windows) == nv::MainOutcome::Ended)
            return 0;
        MSG message;
        while (windows.collect() && GetMessageW(&message, nullptr, 0, 0) > 0)
            nv::win32::dispatch(message);
    } catch (...) {
        nv::tellUncaughtFailure();
        return 1;
    }
    return 0;
}
