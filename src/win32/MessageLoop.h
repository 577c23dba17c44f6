#pragma once

#include "platform/WorkerThread.h"
#include "win32/WindowProcedure.h"

#include <functional>
#include <optional>
#include <thread>
#include <windows.h>

namespace nv::win32 {

// What every message loop of the program does with the keyboard: F1 opens the help in any
// window, the main window has its accelerators, Tab goes from control to control.
struct KeyRoutes {
    std::function<void()> help;
    HWND acceleratorWindow = nullptr;
    HACCEL accelerators = nullptr;
};
inline bool isUserInput(UINT message) {
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
           (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
           (message >= WM_NCMOUSEMOVE && message <= WM_NCXBUTTONDBLCLK) || message == WM_CLOSE;
}

inline KeyRoutes& keyRoutes() {
    static KeyRoutes routes;
    return routes;
}

// Hands one message on the way the program's loops do.
inline void dispatch(MSG& message) {
    const KeyRoutes& routes = keyRoutes();
    if (message.message == WM_KEYDOWN && message.wParam == VK_F1 && routes.help) {
        try {
            routes.help();
        } catch (...) {
            tellUncaughtFailure();
        }
        return;
    }
    HWND root = message.hwnd ? GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    if (root && root == routes.acceleratorWindow &&
        TranslateAcceleratorW(root, routes.accelerators, &message))
        return;
    if (root && (GetWindowLongW(root, GWL_EXSTYLE) & WS_EX_CONTROLPARENT) &&
        IsDialogMessageW(root, &message))
        return;
    TranslateMessage(&message);
    DispatchMessageW(&message);
}

// Serves messages while keepGoing says so; a WM_QUIT met here is posted again for the outer loop.
inline void runWhile(const std::function<bool()>& keepGoing) {
    MSG message;
    while (keepGoing()) {
        const BOOL got = GetMessageW(&message, nullptr, 0, 0);
        if (got == 0)
            PostQuitMessage(static_cast<int>(message.wParam));
        if (got <= 0)
            return;
        dispatch(message);
    }
}

// Runs work on a worker thread while this thread keeps windows painted and clips moving but
// drops the user's input; what work threw is thrown here.
inline void runWithoutUserInput(const std::function<void()>& work) {
    HANDLE done = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::exception_ptr failure;
    std::thread worker = startWorker(work, failure, [done] { SetEvent(done); });
    std::optional<int> quit;
    MSG message;
    while (MsgWaitForMultipleObjects(1, &done, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT)
                quit = static_cast<int>(message.wParam);
            else if (!isUserInput(message.message)) {
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
        }
    }
    worker.join();
    CloseHandle(done);
    // A click or a key made meanwhile does not act later, say on the next box of the run.
    while (PeekMessageW(&message, nullptr, WM_KEYFIRST, WM_KEYLAST, PM_REMOVE) ||
           PeekMessageW(&message, nullptr, WM_MOUSEFIRST, WM_MOUSELAST, PM_REMOVE)) {
    }
    if (quit)
        PostQuitMessage(*quit);
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace nv::win32
