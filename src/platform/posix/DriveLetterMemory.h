#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace nv {

// Remembers per user which drive letter went to which volume, so that a stick keeps its letter
// across starts and plug orders, as the home platform's system does. Kept in a small file of
// its own (one "E <last seen> <volume key>" line a letter), written whole; a damaged or
// unreadable file is rebuilt from what this process knows.
class DriveLetterMemory {
public:
    struct Entry {
        char letter;
        int64_t seen; // seconds since 1970 when the volume was last present
        std::string key;
    };

    // path "" keeps the table in this process alone.
    explicit DriveLetterMemory(std::string path);

    // Gives each present volume its letter: the one it had, else the first from D: on that no
    // remembered volume holds, else the letter of the volume seen longest ago. Letters in
    // blocked belong to other drives. A volume whose letter is blocked, or a second one with the
    // same key, gets a free letter for this process only. One letter for each of present, in its
    // order; 0 for a volume that gets none.
    std::vector<char> assign(const std::vector<std::string>& present, const std::set<char>& blocked,
                             int64_t now);

    // Where the table is kept for this user: $XDG_STATE_HOME, else ~/.local/state.
    static std::string pathFromEnvironment();

private:
    void load();
    void save() const;

    std::string path_;
    std::vector<Entry> entries_;
    bool damaged_ = false;
};

} // namespace nv
