#pragma once

#include "backup/qt/QtBackupWindows.h"

namespace nv {

class FrmMain;

// The backup run's windows when the main window starts it: the progress window over it, and its
// status texts and folder list.
class FrmMainBackupWindows : public QtBackupWindows {
public:
    explicit FrmMainBackupWindows(FrmMain& main);

    void setStatusText(const std::string& text) override;
    void RefreshStatus() override;
    void refreshTargetDirectories() override;

    // As QtBackupWindows::runCopy, and the drive watch holds still meanwhile.
    void runCopy(const std::function<void()>& work) override;

private:
    FrmMain& main_;
};

} // namespace nv
