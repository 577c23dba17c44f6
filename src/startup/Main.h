#pragma once

#include "startup/Settings.h"

#include <string>

namespace nv {

// The windows Main brings up; the window layer fills it in.
class StartWindows {
public:
    virtual ~StartWindows() = default;
    virtual void loadMainWindow() = 0;
    virtual void showMainWindow() = 0;
    virtual void loadSplash() = 0;
    virtual void showSplash() = 0;
};

enum class MainOutcome {
    Ended,   // the program ends now; no window was made
    Running, // the windows stand and the event loop takes over
};

extern const char* const kRestoreOnlyQuestion;

// The program's start: finds the production folder, chooses the mode, reads the settings and
// brings up the windows.
MainOutcome Main(StartWindows& windows);

} // namespace nv
