#include "sidewindows/OpenUrl.h"

#include "platform/FileFailure.h"
#include "platform/Platform.h"
#include "startup/AppSettings.h"
#include "startup/FileOps.h"
#include "startup/Paths.h"

namespace nv {

namespace {

// Writes, opens and deletes the shortcut in one folder; false when it cannot be written there.
bool openThrough(const std::string& folder, const std::string& target) {
    if (folder.empty())
        return false;
    std::string path = folderWithTrailingBackslash(folder) + "temp.url";
    try {
        subWriteFile(path, fInternetShortcut(target));
    } catch (const FileFailure&) {
        return false;
    }
    if (platform().shell)
        platform().shell->open(path);
    try {
        subDeleteFile(path);
    } catch (const FileFailure&) {
    }
    return true;
}

} // namespace

std::string fInternetShortcut(const std::string& target) {
    return "[internetShortcut]\r\nurl =" + target + "\r\n";
}

void subOpenUrl(const std::string& target) {
    // A program folder the user may not write to, as an install under /opt or Program Files,
    // would leave the link dead; the production folder is always the user's own.
    if (!openThrough(AppPath(), target))
        openThrough(AppSettings.strAppDir, target);
}

} // namespace nv
