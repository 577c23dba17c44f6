#include "backup/BackupRun.h"

#include "startup/FileOps.h"
#include "startup/MsgBox.h"

namespace nv {

std::string mirroredFolderPart(const std::string& sStrFile) {
    // The drive prefix is dropped unseen; positions count from 1, 0 is not found.
    std::string rest = sStrFile.size() > 3 ? sStrFile.substr(3) : std::string();
    std::size_t first = 0;
    std::size_t second = 0;
    for (std::size_t position = rest.size(); position >= 1; --position) {
        if (rest[position - 1] != '\\')
            continue;
        if (first == 0) {
            first = position;
        } else {
            second = position;
            break;
        }
    }
    if (second > 0)
        return rest.substr(second - 1, first - second);
    if (first > 0)
        // One level deep (C:\Norvale\x.mdb) the one folder there is mirrors; a file at the root
        // of its drive lies directly in the backup folder.
        return std::string("\\").append(rest, 0, first - 1);
    return "";
}

std::string fFullPath(const std::string& sStrFile, const std::string& strBackupFolder) {
    std::string result;
    try {
        const std::string folderPart = mirroredFolderPart(sStrFile);
        goOnBehind([&] { subMakeFolder(strBackupFolder + folderPart); });
        goOnBehind([&] { result = strBackupFolder + folderPart + "\\" + fFirstMatch(sStrFile); });
    } catch (const FileFailure& failure) {
        MsgBox(failure.Description + "\r\nModule: fFullPath " + std::to_string(failure.Number));
        return "";
    }
    return result;
}

} // namespace nv
