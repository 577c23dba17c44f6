// Drives the installed Windows program from outside, as its user and a user's tools see it: by
// window classes, captions and list rows. Each step is one run of this driver; between them
// tests/win32/smoke.sh looks at the files on the Linux side.
//   smoke_driver backup <program.exe> <stick folder>
//   smoke_driver restore
//   smoke_driver finish <program.exe> <stick folder>   (the stick pulled and plugged back, a file
//       added through the open dialog, F1, a second start, closing)
#include "platform/win32/Win32Text.h"
#include "support/TestMachine.h"

#include <windows.h>

#include <shlobj.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <vector>

namespace {

using namespace std::chrono_literals;

const wchar_t* const kMainCaption = L"Norvale Backup & Restore ";
// A file of the user's own, made by smoke.sh, that joins the list through the open dialog.
const wchar_t* const kAdded = L"C:\\Gegevens\\Kasboek 2026.xls";
const wchar_t* const kRows[] = {L"NV_Ledger01.mdb", L"NV_Lists97.mdb",   L"panels.ini",
                                L"NV_Entity.NVD",   L"NVbackuptool.ini", L"Nota.ini",
                                L"NV.ini",          L"Refresh.ini",      L"NV_stock.NVD"};

int failures = 0;

bool check(bool ok, const std::wstring& what) {
    std::printf("%s %s\n", ok ? "ok  " : "FAIL", nv::win32::utf8FromWide(what).c_str());
    std::fflush(stdout);
    failures += ok ? 0 : 1;
    return ok;
}

[[noreturn]] void giveUp(const std::wstring& what) {
    check(false, what);
    std::exit(1);
}

// The first non-null answer of found within the time, or nullptr.
HWND waitFor(const std::function<HWND()>& found, std::chrono::milliseconds limit = 30s) {
    for (auto end = std::chrono::steady_clock::now() + limit;
         std::chrono::steady_clock::now() < end; std::this_thread::sleep_for(2ms))
        if (HWND window = found())
            return window;
    return nullptr;
}

HWND mustFind(const std::function<HWND()>& found, const std::wstring& what) {
    HWND window = waitFor(found);
    if (!window)
        giveUp(what + L": not found");
    return window;
}

// The shown window of a class (and caption), once there.
std::function<HWND()> shown(const wchar_t* cls, const wchar_t* caption = nullptr) {
    return [=] {
        HWND window = FindWindowW(cls, caption);
        return IsWindowVisible(window) ? window : nullptr;
    };
}

bool waitGone(HWND window, std::chrono::milliseconds limit = 30s) {
    return waitFor([&] { return IsWindowVisible(window) ? nullptr : HWND_BROADCAST; }, limit);
}

std::wstring classOf(HWND window) {
    wchar_t name[256] = L"";
    GetClassNameW(window, name, 256);
    return name;
}

std::wstring textOf(HWND window) {
    std::wstring text(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0) + 1, L'\0');
    text.resize(SendMessageW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(&text[0])));
    return text;
}

// A button's caption as read, without its access key mark.
std::wstring plain(std::wstring text) {
    text.erase(std::remove(text.begin(), text.end(), L'&'), text.end());
    return text;
}

// The visible windows of a class ("" for any) that pass a test: the program's own top-level windows
// when parent is null, else the controls under parent, top to bottom and left to right.
std::vector<HWND> windows(HWND parent, const std::wstring& cls,
                          const std::function<bool(HWND)>& also = {}) {
    struct Search {
        const std::wstring& cls;
        const std::function<bool(HWND)>& also;
        std::vector<HWND> found;
    } search{cls, also, {}};
    const WNDENUMPROC each = [](HWND window, LPARAM data) -> BOOL {
        auto& s = *reinterpret_cast<Search*>(data);
        if (IsWindowVisible(window) && (s.cls.empty() || classOf(window) == s.cls) &&
            (!s.also || s.also(window)))
            s.found.push_back(window);
        return TRUE;
    };
    if (parent)
        EnumChildWindows(parent, each, reinterpret_cast<LPARAM>(&search));
    else
        EnumWindows(each, reinterpret_cast<LPARAM>(&search));
    std::stable_sort(search.found.begin(), search.found.end(), [](HWND a, HWND b) {
        RECT ra, rb;
        GetWindowRect(a, &ra);
        GetWindowRect(b, &rb);
        return ra.top != rb.top ? ra.top < rb.top : ra.left < rb.left;
    });
    return search.found;
}

HWND first(const std::vector<HWND>& found) {
    return found.empty() ? nullptr : found.front();
}

DWORD processOf(HWND window) {
    DWORD pid = 0;
    GetWindowThreadProcessId(window, &pid);
    return pid;
}

// A control under parent whose text starts with start ("" for any).
HWND control(HWND parent, const std::wstring& cls, const std::wstring& start = L"") {
    return first(windows(parent, cls, [&](HWND w) { return plain(textOf(w)).starts_with(start); }));
}

void click(HWND button) {
    PostMessageW(button, BM_CLICK, 0, 0);
}

std::vector<std::wstring> rows(HWND list) {
    const bool combo = classOf(list) == L"ComboBox";
    std::vector<std::wstring> out;
    const LRESULT count = SendMessageW(list, combo ? CB_GETCOUNT : LB_GETCOUNT, 0, 0);
    for (LRESULT row = 0; row < count; ++row) {
        std::wstring text(SendMessageW(list, combo ? CB_GETLBTEXTLEN : LB_GETTEXTLEN, row, 0) + 1,
                          L'\0');
        text.resize(SendMessageW(list, combo ? CB_GETLBTEXT : LB_GETTEXT, row,
                                 reinterpret_cast<LPARAM>(&text[0])));
        out.push_back(text);
    }
    return out;
}

// The message box the program (pid) shows, its text checked, answered with the button that
// carries answer.
void answerBox(DWORD pid, const std::wstring& text, const std::wstring& answer) {
    HWND box = mustFind(
        [&] {
            return first(windows(nullptr, L"#32770", [&](HWND w) { return processOf(w) == pid; }));
        },
        L"box \"" + text + L"\"");
    const std::wstring shown = textOf(GetDlgItem(box, 0xFFFF));
    check(shown == text,
          L"box says \"" + text + L"\"" + (shown == text ? L"" : L", not \"" + shown + L"\""));
    HWND button = control(box, L"Button", answer);
    if (!button)
        giveUp(L"box has no button " + answer);
    click(button);
    if (!waitGone(box))
        giveUp(L"box \"" + text + L"\" stays after " + answer);
}

// With NV_SHOTS set (a folder), the window is asked to be taken, the program held still
// meanwhile: the request names its place on the screen, and the taker answers with a file of the
// same name ending in .done.
void shoot(HWND window, const char* name) {
    const char* folder = std::getenv("NV_SHOTS");
    if (!folder)
        return;
    using Call = LONG(NTAPI*)(HANDLE);
    auto ntdll = [](const char* call) {
        return reinterpret_cast<Call>(
            reinterpret_cast<void (*)()>(GetProcAddress(GetModuleHandleA("ntdll.dll"), call)));
    };
    std::this_thread::sleep_for(500ms);
    HANDLE program = OpenProcess(PROCESS_SUSPEND_RESUME, FALSE, processOf(window));
    ntdll("NtSuspendProcess")(program);
    RECT r;
    GetWindowRect(window, &r);
    const std::string request = (std::filesystem::path(folder) / name).string();
    std::ofstream(request + ".part")
        << r.right - r.left << "x" << r.bottom - r.top << "+" << r.left << "+" << r.top << "\n";
    std::filesystem::rename(request + ".part", request + ".req");
    for (int i = 0; i < 3000 && !std::filesystem::exists(request + ".done"); ++i)
        std::this_thread::sleep_for(10ms);
    ntdll("NtResumeProcess")(program);
    CloseHandle(program);
}

HWND mainWindow() {
    return mustFind(shown(L"NorvaleBackupMain", kMainCaption), L"main window");
}

std::wstring productionFolder() {
    wchar_t appData[MAX_PATH] = L"";
    SHGetFolderPathW(nullptr, CSIDL_APPDATA, nullptr, 0, appData);
    return std::wstring(appData) + L"\\Norvale\\";
}

PROCESS_INFORMATION start(const std::wstring& program) {
    STARTUPINFOW info{};
    info.cb = sizeof info;
    PROCESS_INFORMATION process{};
    std::wstring line = L"\"" + program + L"\"";
    if (!CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr,
                        &info, &process))
        giveUp(L"cannot start " + program);
    return process;
}

void backup(const std::wstring& program, const std::wstring& stick) {
    nvtest::setWineDrive('E', stick, true);
    check(GetDriveTypeW(L"E:\\") == DRIVE_REMOVABLE, L"E: is a removable drive");
    const DWORD pid = start(program).dwProcessId;
    HWND main = mainWindow();
    check(processOf(main) == pid, L"the main window is the started program's");
    HWND splash = waitFor(shown(L"NorvaleBackupSplash"), 5s);
    check(splash && waitGone(splash, 10s), L"the splash window shows and goes by itself");

    HWND files = first(windows(main, L"ListBox"));
    std::vector<std::wstring> expected;
    for (const wchar_t* row : kRows)
        expected.push_back(productionFolder() + row);
    check(files && rows(files) == expected, L"the list holds the production files");

    HWND drives = control(main, L"ComboBox");
    const std::vector<std::wstring> entries = drives ? rows(drives) : std::vector<std::wstring>{};
    const auto e = std::find(entries.begin(), entries.end(), L"E: [NVSTICK]");
    if (!check(e != entries.end(), L"the drive list offers E: [NVSTICK]"))
        std::exit(1);
    SendMessageW(drives, CB_SETCURSEL, e - entries.begin(), 0);
    PostMessageW(GetParent(drives), WM_COMMAND, MAKEWPARAM(GetDlgCtrlID(drives), CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(drives));
    mustFind([&] { return control(main, L"Button", L"Terugzetten Backup"); },
             L"the restore button after E: was chosen");
    shoot(main, "main-window");

    click(mustFind([&] { return control(main, L"Button", L"Back Up"); }, L"Back Up button"));
    SYSTEMTIME today;
    GetLocalTime(&today);
    wchar_t folder[32];
    swprintf(folder, 32, L"E:\\Backup%04d-%02d-%02d", today.wYear, today.wMonth, today.wDay);
    answerBox(pid, std::wstring(L"Backup maken naar map: \r\n\r\n") + folder, L"OK");
    // The copy window stands from the first copy until all is on the stick.
    HWND copy = waitFor(shown(L"NorvaleBackupCopy"), 10s);
    check(copy, L"the copy window comes");
    shoot(copy, "copy-window");
    answerBox(pid, std::wstring(L"Bestanden succesvol gekopieerd naar ") + folder, L"OK");
    check(!copy || !IsWindow(copy) || !IsWindowVisible(copy), L"the copy window has gone");
}

void restore() {
    HWND main = mainWindow();
    const DWORD pid = processOf(main);
    click(mustFind([&] { return control(main, L"Button", L"Terugzetten Backup"); },
                   L"restore button"));
    auto step = [&](int n) {
        const std::wstring heading = L"Terugzetten backup, stap " + std::to_wstring(n) + L" van 5";
        check(waitFor([&] { return control(main, L"Static", heading); }, 10s), heading);
    };
    auto next = [&] { click(control(main, L"Button", L"Volgende >>>")); };
    step(1);
    next();
    step(2);
    next();
    step(3);
    // The backup folder opens with a double click on its row of the folder list.
    HWND folders = windows(main, L"ListBox").at(1);
    const std::vector<std::wstring> shown = rows(folders);
    const auto row = std::find_if(shown.begin(), shown.end(), [](const std::wstring& r) {
        return r.find(L"Backup") != r.npos;
    });
    if (!check(row != shown.end(), L"the folder list shows the backup folder"))
        std::exit(1);
    const LRESULT height = SendMessageW(folders, LB_GETITEMHEIGHT, 0, 0);
    const LRESULT top = SendMessageW(folders, LB_GETTOPINDEX, 0, 0);
    const LPARAM at = MAKELPARAM(8, ((row - shown.begin()) - top) * height + height / 2);
    for (UINT message : {WM_LBUTTONDOWN, WM_LBUTTONUP, WM_LBUTTONDBLCLK, WM_LBUTTONUP})
        PostMessageW(folders, message, message == WM_LBUTTONUP ? 0 : MK_LBUTTON, at);
    HWND backupFiles = windows(main, L"ListBox").at(2);
    check(waitFor(
              [&] { return rows(backupFiles).size() == std::size(kRows) ? backupFiles : nullptr; },
              10s),
          L"the backup folder's files are listed");
    shoot(main, "wizard");
    next();
    step(4);
    check(control(main, L"", L"U staat op het punt om bestanden terug te zetten. U heeft 9 "),
          L"step 4 counts 9 files");
    next();
    answerBox(pid, L"U staat op het punt om de backup terug te zetten. Wilt u doorgaan?", L"Ja");
    check(
        waitFor([&] { return control(main, L"", L"Het terugzetten van de bestanden is gereed."); }),
        L"the wizard tells the restore is done");
    next();
    check(waitFor([&] { return control(main, L"Button", L"Volgende >>>") ? nullptr : main; }, 10s),
          L"the wizard closes after its last step");
}

void finish(const std::wstring& program, const std::wstring& stick) {
    HWND main = mainWindow();
    // The drive watch tells a pulled stick at its next tick, and takes it again once it is back.
    const auto pulledTold = [&] { return control(main, L"Static", L"U heeft het station E:"); };
    nvtest::setWineDrive('E', {}, true);
    check(waitFor(pulledTold, 10s), L"a pulled stick is told");
    nvtest::setWineDrive('E', stick, true);
    check(waitFor([&] { return pulledTold() ? nullptr : main; }, 10s),
          L"the stick plugged back is taken again");
    HANDLE process = OpenProcess(SYNCHRONIZE | PROCESS_QUERY_INFORMATION, FALSE, processOf(main));
    click(mustFind([&] { return control(main, L"Button", L"Voeg bestand toe aan lijst"); },
                   L"the add button"));
    HWND dialog = mustFind(shown(L"#32770", L"Files voor BackUp"), L"the open dialog");
    SendMessageW(control(dialog, L"Edit"), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(kAdded));
    click(GetDlgItem(dialog, IDOK));
    HWND files = first(windows(main, L"ListBox"));
    check(waitFor(
              [&] {
                  const std::vector<std::wstring> now = rows(files);
                  return !now.empty() && now.back() == kAdded ? files : nullptr;
              },
              10s),
          L"the open dialog adds a file of the user's to the list");

    GUITHREADINFO focus{};
    focus.cbSize = sizeof focus;
    GetGUIThreadInfo(GetWindowThreadProcessId(main, nullptr), &focus);
    PostMessageW(focus.hwndFocus ? focus.hwndFocus : main, WM_KEYDOWN, VK_F1, 1);
    HWND help = waitFor(shown(L"HH Parent"));
    if (check(help, L"F1 opens the help window")) {
        PostMessageW(help, WM_CLOSE, 0, 0);
        check(waitGone(help, 10s), L"the help window closes");
    }

    const PROCESS_INFORMATION second = start(program);
    answerBox(second.dwProcessId,
              L"Norvale Backup is al geopend.\r\n\r\nU kunt verder werken in het venster dat al "
              L"openstaat.",
              L"OK");
    check(WaitForSingleObject(second.hProcess, 20000) == WAIT_OBJECT_0,
          L"the second start ends after its box");
    check(IsWindow(main) && IsWindowVisible(main), L"the first window stays");

    PostMessageW(main, WM_CLOSE, 0, 0);
    DWORD code = 1;
    check(WaitForSingleObject(process, 20000) == WAIT_OBJECT_0 &&
              GetExitCodeProcess(process, &code) && code == 0,
          L"closing the main window ends the program");
}

} // namespace

int wmain(int argc, wchar_t** argv) {
    const std::wstring step = argc > 1 ? argv[1] : L"";
    if (step == L"backup" && argc == 4)
        backup(argv[2], argv[3]);
    else if (step == L"restore")
        restore();
    else if (step == L"finish" && argc == 4)
        finish(argv[2], argv[3]);
    else
        giveUp(
            L"usage: smoke_driver backup <program> <stick> | restore | finish <program> <stick>");
    return failures == 0 ? 0 : 1;
}
