#include "support/TestMachine.h"

#include "platform/DateText.h"
#include "platform/DriveFormConversion.h"
#include "startup/AppSettings.h"

#include <cctype>
#include <cstring>
#include <fstream>
#include <iterator>

#ifdef _WIN32
#include <windows.h>
#include <winioctl.h>
#else
#include "platform/posix/DriveTable.h"
#endif

namespace nvtest {

nv::Answer ScriptedBoxes::show(const nv::MessageBoxRequest& request) {
    if (onShow)
        onShow(request);
    shown.push_back(request);
    if (answers_.empty())
        return nv::defaultAnswer(request.buttons, request.defaultButton);
    nv::Answer next = answers_.front();
    answers_.pop_front();
    return next;
}

void RecordingShell::open(const std::string& path) {
    opened.push_back(path);
    std::ifstream in(nv::nativeFormOf(path), std::ios::binary);
    contents.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

TestMachine::TestMachine() : platform(withTestPieces()), installed_(platform) {
    clock.date = nv::dateFromCivil({2026, 11, 17});
    nv::AppSettings = nv::AppSettingsRecord{};
    nv::App = nv::AppRecord{};
}

nv::Platform TestMachine::withTestPieces() {
    nv::Platform p = nv::nativePlatform();
    p.boxes = &boxes;
    p.clock = &clock;
    p.folders = &folders;
    p.process = &process;
    p.shell = &shell;
    p.dialogs = &dialogs;
    return p;
}

std::string crlf(const std::string& lines) {
    std::string out;
    for (char c : lines)
        out += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return out;
}

bool runningUnderWine() {
#ifdef _WIN32
    HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    return ntdll && GetProcAddress(ntdll, "wine_get_version") != nullptr;
#else
    return false;
#endif
}

#ifdef _WIN32
// Wine's own request to its mount manager, as its configuration tool makes it: a drive
// substituted the Windows way lists under Wine but reaches no file.
void setWineDrive(char letter, const std::filesystem::path& root, bool removable) {
    struct {
        ULONG size, type, fsType;
        DWORD serial;
        ULONGLONG unixDevice;
        WCHAR letter;
        USHORT mountPointOffset, deviceOffset, labelOffset;
        char unixPath[4096];
    } r{};
    using UnixName = char*(CDECL*)(const wchar_t*);
    const auto unixName = reinterpret_cast<UnixName>(reinterpret_cast<void (*)()>(
        GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
    if (char* path = root.empty() ? nullptr : unixName(root.wstring().c_str())) {
        r.mountPointOffset = static_cast<USHORT>(r.unixPath - reinterpret_cast<char*>(&r));
        strncpy(r.unixPath, path, sizeof r.unixPath - 1);
        HeapFree(GetProcessHeap(), 0, path);
    }
    r.size = static_cast<ULONG>(r.mountPointOffset ? r.mountPointOffset + strlen(r.unixPath) + 1
                                                   : r.unixPath - reinterpret_cast<char*>(&r));
    r.type = !r.mountPointOffset ? DRIVE_NO_ROOT_DIR : removable ? DRIVE_REMOVABLE : DRIVE_FIXED;
    r.letter = static_cast<WCHAR>(tolower(letter));
    HANDLE manager =
        CreateFileW(L"\\\\.\\MountPointManager", GENERIC_READ | GENERIC_WRITE,
                    FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    DeviceIoControl(manager,
                    CTL_CODE(0x6d, 32, METHOD_BUFFERED, FILE_READ_ACCESS | FILE_WRITE_ACCESS), &r,
                    r.size, nullptr, 0, nullptr, nullptr);
    CloseHandle(manager);
}
#endif

void setFolderDrive(char letter, const std::filesystem::path& root) {
#ifdef _WIN32
    if (runningUnderWine())
        setWineDrive(letter, root);
    else if (root.empty())
        DefineDosDeviceA(DDD_REMOVE_DEFINITION, (std::string(1, letter) + ":").c_str(), nullptr);
    else
        DefineDosDeviceA(0, (std::string(1, letter) + ":").c_str(), root.string().c_str());
#else
    nv::DriveTable& table = nv::driveTableOf(nv::nativePlatform());
    if (root.empty())
        table.remove(letter);
    else
        table.setFolder(letter, root.string());
#endif
}

} // namespace nvtest
