#pragma once

#include <string>

namespace nv {

// Windows-1252 bytes to UTF-8; the five unassigned bytes map to the C1 controls of the same value.
std::string utf8FromCp1252(const std::string& bytes);
// UTF-8 to Windows-1252; a character the code page lacks becomes '?', as on the home platform.
std::string cp1252FromUtf8(const std::string& text);
// Whether every character of a UTF-8 text has a byte of its own in the code page.
bool fitsCp1252(const std::string& text);

} // namespace nv
