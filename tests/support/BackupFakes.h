#pragma once

#include "backup/BackupRun.h"
#include "platform/FailureText.h"
#include "support/TestMachine.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

#ifdef _WIN32
#include "platform/win32/Win32FileSystem.h"
#else
#include "platform/posix/PosixFileSystem.h"
#endif

namespace nvtest {

// Keeps, in one log and in order, what the user is shown of the run.
class FakeBackupWindows : public nv::BackupWindows {
public:
    void subShowCopyWindow() override {
        log.push_back("show");
        if (showFailure)
            throw *showFailure;
        copyWindowOpen = true;
    }
    void setProgressMax(int maximum) override { log.push_back("max " + std::to_string(maximum)); }
    void setProgressValue(int value) override { log.push_back("value " + std::to_string(value)); }
    void setCopyText(const std::string& text) override { log.push_back("text " + text); }
    void closeCopyWindow() override {
        log.push_back("close");
        copyWindowOpen = false;
    }
    void setStatusText(const std::string& text) override { log.push_back("status " + text); }
    void RefreshStatus() override {
        log.push_back("RefreshStatus");
        if (refreshFailure)
            throw *refreshFailure;
    }
    void refreshTargetDirectories() override { log.push_back("refreshTargetDirectories"); }
    void runCopy(const std::function<void()>& work) override {
        ++copies;
        if (beforeCopy)
            beforeCopy(copies);
        work();
    }
    void runCommit(const std::function<void()>& work) override { work(); }

    std::vector<std::string> log;
    bool copyWindowOpen = false;
    int copies = 0;
    // Called with the number of the copy, from 1; what it throws is the copy's failure.
    std::function<void(int)> beforeCopy;
    std::optional<nv::FileFailure> showFailure;
    std::optional<nv::FileFailure> refreshFailure;
};

// Boxes answered from the script; each is also noted in the windows' log by its title.
class LoggingBoxes : public ScriptedBoxes {
public:
    explicit LoggingBoxes(std::vector<std::string>& log) : log_(log) {}
    nv::Answer show(const nv::MessageBoxRequest& request) override {
        log_.push_back("box " + request.title);
        if (onShow)
            onShow(request);
        return ScriptedBoxes::show(request);
    }
    std::function<void(const nv::MessageBoxRequest&)> onShow;

private:
    std::vector<std::string>& log_;
};

#ifdef _WIN32
using NativeFiles = nv::Win32FileSystem;
#else
struct NativeFiles : nv::PosixFileSystem {
    NativeFiles() : PosixFileSystem(nv::DriveTable::machine()) {}
};
#endif

// The files of this machine, except that the flush of a group's data fails on cue with a chosen
// number; the folders flushed are kept.
class FaultyFiles : public NativeFiles {
public:
    void flushFolder(const std::string& folder) override {
        flushed.push_back(folder);
        NativeFiles::flushFolder(folder);
    }
    void flushStaged(const std::vector<nv::StagedCopy>& copies) override {
        if (failFlushNumber)
            throw nv::fileFailure(failFlushNumber);
        NativeFiles::flushStaged(copies);
    }
    int32_t failFlushNumber = 0;
    std::vector<std::string> flushed;
};

} // namespace nvtest
