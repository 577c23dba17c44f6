#pragma once

#include "backup/BackupRun.h"
#include "backup/FrmCopy.h"

#include <memory>

namespace nv {

class FrmMain;

// The backup run's windows when the main window starts it: the progress window over it, and its
// status texts and folder list. The drive watch holds still while a copy runs.
class FrmMainBackupWindows : public BackupWindows {
public:
    explicit FrmMainBackupWindows(FrmMain& main);
    ~FrmMainBackupWindows() override;

    void subShowCopyWindow() override;
    void setProgressMax(int maximum) override;
    void setProgressValue(int value) override;
    void setCopyText(const std::string& text) override;
    void closeCopyWindow() override;

    void setStatusText(const std::string& text) override;
    void RefreshStatus() override;
    void refreshTargetDirectories() override;

    void runCopy(const std::function<void()>& work) override;

    // The progress window while it stands, else null.
    Frm_Copy* copyWindow() const { return copy_ ? &copy_->form() : nullptr; }

private:
    FrmMain& main_;
    std::unique_ptr<FormFace<Frm_Copy>> copy_;
};

} // namespace nv
