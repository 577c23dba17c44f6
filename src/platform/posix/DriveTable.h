#pragma once

#include "platform/Drives.h"
#include "platform/posix/DriveLetterMemory.h"
#include "platform/posix/PosixIo.h"

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace nv {

struct Platform;

// Gives drive letters a meaning on Linux: C: is /, H: the home folder, the drives a file
// manager shows (under /media, /run/media, and block devices under /mnt) the letter from D: on
// that the user's table of letters keeps for their volume, and NVBACKUP_DRIVES
// ("E=/srv/stick;F=/tmp/other") adds or replaces letters.
class DriveTable : public Drives {
public:
    struct Options {
        std::string home;                                   // "" leaves H: out
        std::string drivesVariable;                         // the text of NVBACKUP_DRIVES
        std::string mountinfoPath = "/proc/self/mountinfo"; // "" reads no mounts
        bool scanMounts = true;                             // mounted drives get letters
        std::string lettersPath;                            // "" remembers in this process only
        std::string devDisk = "/dev/disk";                  // by-uuid and by-label links
    };

    explicit DriveTable(Options options);
    ~DriveTable() override;
    DriveTable(const DriveTable&) = delete;
    DriveTable& operator=(const DriveTable&) = delete;
    // What this process is given: $HOME and $NVBACKUP_DRIVES, with the mounts of the machine.
    static Options fromEnvironment();
    // No mounts and no letters but C: and the ones a test gives.
    static Options foldersOnly();

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
    // A given folder that was a mount point, or lies under /media: ready only while the same
    // volume is mounted there, never when its empty mount point is left on the internal disk.
    struct Anchor {
        bool looked = false; // decided at the first look at the mounts
        bool needed = false;
        std::string point; // where the volume was mounted; "" until first seen
        std::string key;
    };

    void rebuild();
    // refreshMounts, saying whether it rebuilt the table.
    bool readMounts();

    Options options_;
    std::map<char, DriveInfo> fixed_; // C:, H:, NVBACKUP_DRIVES and test letters
    std::map<char, Anchor> anchors_;  // of the fixed letters other than C: and H:
    std::set<char> notThere_;         // fixed letters whose volume is not mounted
    DriveLetterMemory letters_;
    std::map<char, DriveInfo> drives_; // what is there now
    std::string lastMountinfo_;
    Fd mountFd_;
    bool mountFdTried_ = false;
    bool haveReadMounts_ = false;
};

// The drive table of a platform; on Linux the drives of every platform are one.
DriveTable& driveTableOf(const Platform& platform);

// Parses NVBACKUP_DRIVES: letter, '=', folder; ';' between entries. Bad entries are skipped.
std::vector<std::pair<char, std::string>> parseDrivesVariable(const std::string& text);

} // namespace nv
