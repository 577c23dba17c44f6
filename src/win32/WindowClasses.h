#pragma once

namespace nv::win32 {

// The window classes of the Windows program. A second start finds the first one's main window
// by its class, and so do the tools that drive the program from outside.
constexpr wchar_t kMainWindowClass[] = L"NorvaleBackupMain";
constexpr wchar_t kCopyWindowClass[] = L"NorvaleBackupCopy";
constexpr wchar_t kAboutWindowClass[] = L"NorvaleBackupAbout";
constexpr wchar_t kSplashWindowClass[] = L"NorvaleBackupSplash";

} // namespace nv::win32
