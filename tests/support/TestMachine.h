#pragma once

#include "platform/Platform.h"
#include "support/TempFolder.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace nvtest {

// Answers boxes from a queue (the default button when it runs dry) and keeps what was shown;
// onShow, when set, looks at the machine while each box is up.
class ScriptedBoxes : public nv::MessageBoxes {
public:
    nv::Answer show(const nv::MessageBoxRequest& request) override;
    void answer(nv::Answer next) { answers_.push_back(next); }

    std::vector<nv::MessageBoxRequest> shown;
    std::function<void(const nv::MessageBoxRequest&)> onShow;

private:
    std::deque<nv::Answer> answers_;
};

class FixedClock : public nv::Clock {
public:
    nv::Date today() override { return date; }
    nv::Moment now() override { return date * nv::kMsPerDay + timeOfDay; }
    nv::Date date = 0;
    nv::Moment timeOfDay = 10 * 3'600'000 + 30 * 60'000;
};

class FixedFolders : public nv::SpecialFolders {
public:
    std::string folder(int csidl) override {
        auto it = folders.find(csidl);
        return it == folders.end() ? "" : it->second;
    }
    std::map<int, std::string> folders;
};

class FixedProcess : public nv::Process {
public:
    std::string appPath() override { return path; }
    std::string path;
};

// Keeps what it was asked to open, with the bytes the file held at that moment.
class RecordingShell : public nv::Shell {
public:
    void open(const std::string& path) override;
    std::vector<std::string> opened;
    std::vector<std::string> contents;
};

// Answers file dialogs from a queue ("" for a cancel when it runs dry); keeps where each began.
class ScriptedDialogs : public nv::FileDialogs {
public:
    std::string showOpen(const std::string& title, const std::string& initDir) override {
        titles.push_back(title);
        startedIn.push_back(initDir);
        if (answers.empty())
            return "";
        std::string next = answers.front();
        answers.pop_front();
        return next;
    }
    std::deque<std::string> answers;
    std::vector<std::string> titles;
    std::vector<std::string> startedIn;
};

// The real files and profile services of this machine over a temporary folder, with the
// clock, the special folders, the program's folder and the boxes in the test's hands.
// 17-11-2026 is today.
class TestMachine {
public:
    TestMachine();
    TestMachine(const TestMachine&) = delete;
    TestMachine& operator=(const TestMachine&) = delete;

    TempFolder temp;
    ScriptedBoxes boxes;
    FixedClock clock;
    FixedFolders folders;
    FixedProcess process;
    RecordingShell shell;
    ScriptedDialogs dialogs;
    // What was installed; a test puts its own piece in place with nv::ScopedPlatformPart.
    const nv::Platform platform;

private:
    nv::Platform withTestPieces();
    nv::ScopedPlatform installed_;
};

// The native platform over a fresh temporary folder, installed for its lifetime (benchmarks).
class NativeMachine {
public:
    NativeMachine() : installed_(nv::nativePlatform()) {}

    TempFolder temp;

private:
    nv::ScopedPlatform installed_;
};

// The file text with CR LF line ends, from lines given with \n.
std::string crlf(const std::string& lines);

// Gives a drive letter to a folder, or takes it away when root is empty: an entry of the drive
// table on Linux, a substituted drive on Windows. A letter on Windows is the whole session's, so
// tests that give one do not run side by side there.
void setFolderDrive(char letter, const std::filesystem::path& root);

#ifdef _WIN32
// Gives a drive letter to a folder under Wine, or takes it away when root is empty.
void setWineDrive(char letter, const std::filesystem::path& root, bool removable = false);
#endif

// Wine's profile services rewrite the whole file on every store (blank lines and blanks around
// keys and values go); tests that look at such bytes say what each platform gives.
bool runningUnderWine();

} // namespace nvtest
