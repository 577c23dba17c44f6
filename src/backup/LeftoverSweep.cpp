#include "backup/LeftoverSweep.h"

#include "platform/CaseFold.h"
#include "platform/FileFailure.h"
#include "startup/FileOps.h"
#include "startup/Paths.h"

#include <algorithm>
#include <vector>

namespace nv {

namespace {

std::vector<std::string> foldersOf(const std::string& folder) {
    try {
        return fListFolders(folder);
    } catch (const FileFailure&) {
        return {};
    }
}

// Removes what interrupted copies left in a folder and its subfolders. Never fails.
void subSweepFolderLeftovers(const std::string& folder) {
    subRemoveCopyLeftovers(folder);
    // A backup writes one level deep at most.
    for (const std::string& sub : foldersOf(folder))
        subRemoveCopyLeftovers(folder + "\\" + sub);
}

} // namespace

void subSweepBackupLeftovers(const std::string& driveTarget, const std::string& runFolder,
                             std::chrono::milliseconds budget) {
    const auto until = std::chrono::steady_clock::now() + budget;
    subSweepFolderLeftovers(runFolder);

    const std::string root = driveTarget + "\\";
    const std::string own = upperCase(bareNameOf(runFolder));
    std::vector<std::string> older;
    for (const std::string& name : foldersOf(root)) {
        const std::string key = upperCase(name);
        if (key.starts_with("BACKUP") && key != own)
            older.push_back(name);
    }
    // Dated names sort by age; the newest are the likeliest to hold what a recent run left.
    std::sort(older.begin(), older.end(), [](const std::string& a, const std::string& b) {
        return upperCase(a) > upperCase(b);
    });
    for (const std::string& name : older) {
        if (std::chrono::steady_clock::now() >= until)
            return;
        subSweepFolderLeftovers(root + name);
    }
}

} // namespace nv
