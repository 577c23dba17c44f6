#pragma once

#include "backup/BackupRun.h"
#include "platform/FailureText.h"
#include "platform/FileSystem.h"
#include "platform/Wildcard.h"
#include "support/TestMachine.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#ifndef _WIN32
#include "platform/posix/DriveTable.h"
#endif

namespace nvtest {

// Keeps, in one log and in order, what the run asks of the windows.
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
        log.push_back("copy");
        ++copies;
        if (beforeCopy)
            beforeCopy(copies);
        work();
    }
    // Not in the log: where a group of copies is committed is the run's own choice.
    void runCommit(const std::function<void()>& work) override {
        ++commits;
        work();
    }

    std::vector<std::string> log;
    bool copyWindowOpen = false;
    int copies = 0;
    int commits = 0;
    std::function<void(int)> beforeCopy; // called with the number of the copy, from 1
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

// The real files, except that chosen operations fail on cue with a chosen number.
class FaultyFiles : public nv::FileSystem {
public:
    explicit FaultyFiles(nv::FileSystem& real) : real_(real) {}

    // Paths compare without regard to case, as on the home platform.
    void failCopyFrom(const std::string& source, int32_t number) {
        copyFailures_[nv::upperCase(source)] = number;
    }
    void failMakeFolder(const std::string& path, int32_t number) {
        folderFailures_[nv::upperCase(path)] = number;
    }
    // Every flush of the data of a group of copies fails with number.
    void failStagedFlush(int32_t number) { stagedFlushFailure_ = number; }
    std::vector<std::string> copiedFrom; // every source a copy was tried from

    std::string firstMatch(const std::string& pattern) override {
        return real_.firstMatch(pattern);
    }
    void moveFile(const std::string& a, const std::string& b) override { real_.moveFile(a, b); }
    void copyFile(const std::string& source, const std::string& destination) override {
        copiedFrom.push_back(source);
        failIfListed(copyFailures_, source);
        real_.copyFile(source, destination);
    }
    void deleteFile(const std::string& path) override { real_.deleteFile(path); }
    void writeFile(const std::string& path, const std::string& bytes) override {
        real_.writeFile(path, bytes);
    }
    void makeFolder(const std::string& path) override {
        failIfListed(folderFailures_, path);
        real_.makeFolder(path);
    }
    void deleteByPattern(const std::string& pattern) override { real_.deleteByPattern(pattern); }
    void removeFolder(const std::string& path) override { real_.removeFolder(path); }
    std::vector<std::string> listFolders(const std::string& folder) override {
        return real_.listFolders(folder);
    }
    std::vector<std::string> listFiles(const std::string& folder,
                                       const std::string& pattern) override {
        return real_.listFiles(folder, pattern);
    }
    void flushFolder(const std::string& folder) override {
        flushed.push_back(folder);
        real_.flushFolder(folder);
    }
    void removeCopyLeftovers(const std::string& folder) override {
        real_.removeCopyLeftovers(folder);
    }
    std::optional<nv::StagedCopy> stageCopy(const std::string& source,
                                            const std::string& destination) override {
        copiedFrom.push_back(source);
        failIfListed(copyFailures_, source);
        return real_.stageCopy(source, destination);
    }
    void flushStaged(const std::vector<nv::StagedCopy>& copies) override {
        if (stagedFlushFailure_)
            throw nv::fileFailure(stagedFlushFailure_);
        real_.flushStaged(copies);
    }
    void placeStaged(const nv::StagedCopy& copy) override { real_.placeStaged(copy); }
    void discardStaged(const nv::StagedCopy& copy) noexcept override { real_.discardStaged(copy); }
    std::vector<std::string> flushed;

private:
    static void failIfListed(const std::map<std::string, int32_t>& failures,
                             const std::string& path) {
        auto it = failures.find(nv::upperCase(path));
        if (it != failures.end())
            throw nv::fileFailure(it->second);
    }

    nv::FileSystem& real_;
    std::map<std::string, int32_t> copyFailures_;
    std::map<std::string, int32_t> folderFailures_;
    int32_t stagedFlushFailure_ = 0;
};

// The target drive of a test over a folder below temp: E: on Linux. Windows (and Wine) cannot give
// a letter to a folder for this process alone, so there the folder's own path stands for the drive;
// the run joins "\Backup..." to either alike.
class TargetDrive {
public:
    TargetDrive(const TempFolder& temp, const std::string& relative) {
#ifdef _WIN32
        target = temp.drive(relative);
#else
        nv::DriveTable& table = nv::DriveTable::machine();
        saved_ = table.find('E');
        table.setFolder('E', temp.native(relative).string());
        target = "E:";
#endif
    }
    ~TargetDrive() {
#ifndef _WIN32
        nv::DriveTable& table = nv::DriveTable::machine();
        table.remove('E');
        if (saved_ && !saved_->mounted)
            table.setFolder('E', saved_->root);
#endif
    }
    TargetDrive(const TargetDrive&) = delete;
    TargetDrive& operator=(const TargetDrive&) = delete;

    std::string target; // what DriveTarget holds

private:
#ifndef _WIN32
    std::optional<nv::DriveInfo> saved_;
#endif
};

} // namespace nvtest
