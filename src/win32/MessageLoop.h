#pragma once

#include <functional>
#include <windows.h>

namespace nv::win32 {

// What every message loop of the program does with the keyboard: F1 opens the help in any
// window, the main window has its accelerators, Tab goes from control to control.
struct KeyRoutes {
    std::function<void()> help;
    HWND acceleratorWindow = nullptr;
    HACCEL accelerators = nullptr;
};
KeyRoutes& keyRoutes();

// Hands one message on the way the program's loops do.
void dispatch(MSG& message);
// Serves messages while keepGoing says so; a WM_QUIT met here is posted again for the outer loop.
void runWhile(const std::function<bool()>& keepGoing);
// Runs work on a worker thread while this thread keeps windows painted and clips moving but
// drops the user's input; what work threw is thrown here.
void runWithoutUserInput(const std::function<void()>& work);

} // namespace nv::win32
