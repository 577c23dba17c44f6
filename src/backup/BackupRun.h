#pragma once

#include "platform/FileFailure.h"

#include <cstdint>
#include <functional>
#include <string>

namespace nv {

// What the backup run asks of the windows: the progress window, the main window's status texts
// and its folder list. The Qt side implements it over FrmMain and Frm_Copy; tests record it.
class BackupWindows {
public:
    virtual ~BackupWindows() = default;

    // Loads and shows the progress window, sets its text to "Even geduld aub", starts the clip
    // and repaints. Throws FileFailure when the clip cannot be opened.
    virtual void subShowCopyWindow() = 0;
    virtual void setProgressMax(int maximum) = 0;
    virtual void setProgressValue(int value) = 0;
    // Sets Text1 of the progress window and repaints it.
    virtual void setCopyText(const std::string& text) = 0;
    // Closing a window that is not open does nothing.
    virtual void closeCopyWindow() = 0;

    // Panel 1 of the main window's status bar.
    virtual void setStatusText(const std::string& text) = 0;
    virtual void RefreshStatus() = 0;
    // Has the folder list read the target drive again.
    virtual void refreshTargetDirectories() = 0;

    // Runs one copy. The window side runs it on a worker thread while the window's thread keeps
    // the clip moving and serves no user input; a FileFailure thrown by work reaches the caller.
    virtual void runCopy(const std::function<void()>& work) { work(); }
    // Runs the flush and renames that put a group of copies in place; as runCopy, the clip moving.
    virtual void runCommit(const std::function<void()>& work) { runCopy(work); }
};

// Copies the backup list into a new dated folder on the target drive. intLoop and
// strBackupFolder (without trailing backslash) are the main window's own fields.
void Cmd_Backup_Click(BackupWindows& windows, int16_t& intLoop, std::string& strBackupFolder);

// The destination of one source in the mirrored layout, its subfolder made; "" after a failure,
// which it has told the user itself.
std::string fFullPath(const std::string& sStrFile, const std::string& strBackupFolder);
// The subfolder fFullPath mirrors a source into, with its leading backslash ("\\Norvale"); ""
// for a file at the root of its drive.
std::string mirroredFolderPart(const std::string& sStrFile);

} // namespace nv
