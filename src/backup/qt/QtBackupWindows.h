#pragma once

#include "backup/BackupRun.h"

#include "backup/qt/FrmCopy.h"

#include <QPointer>

namespace nv {

class FrmMain;

// The backup run's windows: the main window's status texts and folder list, and the progress
// window, which exists from subShowCopyWindow to closeCopyWindow.
class QtBackupWindows : public BackupWindows {
public:
    explicit QtBackupWindows(FrmMain& main) : main_(main) {}
    ~QtBackupWindows() override;
    QtBackupWindows(const QtBackupWindows&) = delete;
    QtBackupWindows& operator=(const QtBackupWindows&) = delete;

    void subShowCopyWindow() override;
    void setProgressMax(int maximum) override;
    void setProgressValue(int value) override;
    void setCopyText(const std::string& text) override;
    void closeCopyWindow() override;

    void setStatusText(const std::string& text) override;
    void RefreshStatus() override;
    void refreshTargetDirectories() override;

    // Runs work on a worker thread. Meanwhile this thread keeps the clip moving and repaints,
    // but serves no user input and holds the drive watch; what work throws is thrown here.
    void runCopy(const std::function<void()>& work) override;

    // The progress window while it stands, else null.
    FrmCopy* copyWindow() const { return copy_.data(); }

private:
    FrmMain& main_;
    QPointer<FrmCopy> copy_;
};

} // namespace nv
