#pragma once

#include <string>

namespace nv {

class HelpWindow;

// Opens the help file (in drive form) in the help window, on its first page; a file that is
// missing or cannot be read gives a box that says so.
void showHelp(const std::string& helpFile);

// The help window while it stands.
HelpWindow* helpWindow();

} // namespace nv
