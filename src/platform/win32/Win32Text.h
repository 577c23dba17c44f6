#pragma once

#include <string>

namespace nv::win32 {

// nvcore strings are UTF-8; the W functions take UTF-16 and the A functions the ANSI code page.
std::wstring wideFromUtf8(const std::string& text);
std::string utf8FromWide(const std::wstring& text);
std::string ansiFromUtf8(const std::string& text);
std::string utf8FromAnsi(const std::string& text);

// A drive-form path as the W functions take it: '/' becomes '\'. Empty is a bad name (52).
std::wstring widePath(const std::string& drivePath);

// True when path starts with a drive letter that this machine does not have.
bool driveMissing(const std::wstring& path);

} // namespace nv::win32
