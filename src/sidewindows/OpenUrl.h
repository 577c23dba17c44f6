#pragma once

#include <string>

namespace nv {

// Opens target, "mailto:" and an address, through a throw-away internet shortcut "temp.url" in
// the program's folder, which is deleted at once. Reports nothing.
void subOpenUrl(const std::string& target);

// The bytes of the shortcut for target.
std::string fInternetShortcut(const std::string& target);

} // namespace nv
