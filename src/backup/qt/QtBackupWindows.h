#pragma once

#include "backup/BackupRun.h"

#include "backup/qt/FrmCopy.h"

#include <QPointer>

namespace nv {

// The backup run's progress window, which exists from subShowCopyWindow to closeCopyWindow and
// stands over the owner, and the copies run off the window's thread. What the run shows in the
// window that started it is the part of a subclass beside that window.
class QtBackupWindows : public BackupWindows {
public:
    explicit QtBackupWindows(QWidget& owner) : owner_(owner) {}
    ~QtBackupWindows() override;
    QtBackupWindows(const QtBackupWindows&) = delete;
    QtBackupWindows& operator=(const QtBackupWindows&) = delete;

    void subShowCopyWindow() override;
    void setProgressMax(int maximum) override;
    void setProgressValue(int value) override;
    void setCopyText(const std::string& text) override;
    void closeCopyWindow() override;

    // Runs work on a worker thread. Meanwhile this thread keeps the clip moving and repaints,
    // but serves no user input; what work throws is thrown here.
    void runCopy(const std::function<void()>& work) override;

    // The progress window while it stands, else null.
    FrmCopy* copyWindow() const { return copy_.data(); }

private:
    QWidget& owner_;
    QPointer<FrmCopy> copy_;
};

} // namespace nv
