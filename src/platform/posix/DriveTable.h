#pragma once

#include "platform/Drives.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace nv {

struct Platform;

// Gives drive letters a meaning on Linux: C: is /, H: the home folder, file systems mounted
// under /media, /run/media and /mnt take the next free letter from D: on, and
// NVBACKUP_DRIVES ("E=/srv/stick;F=/tmp/other") adds or replaces letters.
class DriveTable : public Drives {
public:
    struct Options {
        std::string home;           // "" leaves H: out
        std::string drivesVariable; // the text of NVBACKUP_DRIVES
        std::string mountinfoPath = "/proc/self/mountinfo";
        bool scanMounts = true;
    };

    explicit DriveTable(Options options);
    ~DriveTable() override;
    DriveTable(const DriveTable&) = delete;
    DriveTable& operator=(const DriveTable&) = delete;
    // What this process is given: $HOME and $NVBACKUP_DRIVES, with the mounts of the machine.
    static Options fromEnvironment();

    std::vector<DriveInfo> list() override;
    bool ready(char letter) override;

    // Native root of a letter (either case), without reading the disk; nothing if unknown.
    std::optional<DriveInfo> find(char letter);
    // The drive-form path of a native absolute path: the drive with the longest matching root.
    std::string toDriveForm(const std::string& nativePath);

    // For tests: give a letter a folder, or take it away.
    void setFolder(char letter, const std::string& root);
    void remove(char letter);

    // Reads the mount table again; cheap, and only rebuilds when it changed.
    void refreshMounts();

private:
    void rebuild();

    Options options_;
    std::map<char, DriveInfo> fixed_;          // C:, H:, NVBACKUP_DRIVES and test letters
    std::map<std::string, char> mountLetters_; // a mount point keeps its letter once given
    std::map<char, DriveInfo> drives_;         // what is there now
    std::string lastMountinfo_;
    int mountFd_ = -1;
    bool mountFdTried_ = false;
    bool haveReadMounts_ = false;
};

// The drive table of a platform; on Linux the drives of every platform are one.
DriveTable& driveTableOf(const Platform& platform);

// Parses NVBACKUP_DRIVES: letter, '=', folder; ';' between entries. Bad entries are skipped.
std::vector<std::pair<char, std::string>> parseDrivesVariable(const std::string& text);

} // namespace nv
