#include "support/TestMachine.h"

#include "platform/DateText.h"
#include "platform/DriveFormConversion.h"
#include "startup/AppSettings.h"

#include <fstream>
#include <iterator>

#ifdef _WIN32
#include <windows.h>
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

} // namespace nvtest
