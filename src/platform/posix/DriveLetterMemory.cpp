#include "platform/posix/DriveLetterMemory.h"

#include "platform/posix/Mounts.h"
#include "platform/posix/PosixIo.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sstream>
#include <sys/stat.h>

namespace nv {

namespace {

constexpr const char* kHeader = "# Norvale Backup: drive letter, last seen (seconds since 1970), "
                                "volume (uuid:, label: or point:)\n";

bool validKey(const std::string& key) {
    for (const char* kind : {"uuid:", "label:", "point:"})
        if (key.starts_with(kind) && key.size() > std::char_traits<char>::length(kind))
            return true;
    return false;
}

void makeFolders(const std::string& folder) {
    if (folder.empty() || folder == "/" || folder == ".")
        return;
    struct stat st {};
    if (::stat(folder.c_str(), &st) == 0)
        return;
    makeFolders(parentOf(folder));
    ::mkdir(folder.c_str(), 0700);
}

} // namespace

DriveLetterMemory::DriveLetterMemory(std::string path) : path_(std::move(path)) {}

std::string DriveLetterMemory::pathFromEnvironment() {
    std::string state;
    if (const char* xdg = std::getenv("XDG_STATE_HOME"); xdg && xdg[0] == '/')
        state = xdg;
    else if (const char* home = std::getenv("HOME"); home && home[0] == '/')
        state = std::string(home) + "/.local/state";
    else
        return "";
    return state + "/norvale-backup/drive-letters";
}

void DriveLetterMemory::load() {
    if (path_.empty())
        return;
    std::string text;
    Fd in(::open(path_.c_str(), O_RDONLY | O_CLOEXEC));
    struct stat st {};
    bool readable =
        in.fd >= 0 && ::fstat(in.fd, &st) == 0 && S_ISREG(st.st_mode) && readAll(in.fd, text) == 0;
    if (!readable) {
        // Gone or unreadable: what this process knows is written back at the next change.
        damaged_ = in.fd >= 0 || errno != ENOENT || !entries_.empty();
        return;
    }
    std::istringstream lines(text);
    std::vector<Entry> read;
    bool damaged = false;
    std::string line;
    while (std::getline(lines, line)) {
        if (line.empty() || line[0] == '#')
            continue;
        std::istringstream fields(line);
        std::string letter, seen, key;
        fields >> letter >> seen;
        std::getline(fields >> std::ws, key);
        key = unescapeOctal(key);
        bool good = letter.size() == 1 && letter[0] >= 'D' && letter[0] <= 'Z' && !seen.empty() &&
                    seen.size() < 19 && seen.find_first_not_of("0123456789") == std::string::npos &&
                    validKey(key) && std::none_of(read.begin(), read.end(), [&](const Entry& e) {
                        return e.letter == letter[0] || e.key == key;
                    });
        if (!good) {
            damaged = true;
            continue;
        }
        read.push_back({letter[0], std::stoll(seen), key});
    }
    // A file of which nothing could be read is rebuilt from what this process knows.
    if (read.empty() && damaged)
        read = entries_;
    entries_ = std::move(read);
    damaged_ = damaged;
}

void DriveLetterMemory::save() const {
    if (path_.empty())
        return;
    std::string text = kHeader;
    std::vector<Entry> sorted = entries_;
    std::sort(sorted.begin(), sorted.end(),
              [](const Entry& a, const Entry& b) { return a.letter < b.letter; });
    for (const Entry& e : sorted)
        text += std::string(1, e.letter) + " " + std::to_string(e.seen) + " " + escapeOctal(e.key) +
                "\n";
    makeFolders(parentOf(path_));
    // A table that cannot be written is kept in memory; the letters hold for this process.
    replaceFile(path_, text, 0600);
}

std::vector<char> DriveLetterMemory::assign(const std::vector<std::string>& present,
                                            const std::set<char>& blocked, int64_t now) {
    load();
    const std::vector<Entry> before = entries_;
    std::vector<char> given(present.size(), 0);
    std::set<char> used = blocked;
    std::set<std::string> served;
    std::vector<std::size_t> newcomers, guests;
    auto entryOf = [&](const std::string& key) {
        return std::find_if(entries_.begin(), entries_.end(),
                            [&](const Entry& e) { return e.key == key; });
    };
    auto firstFree = [&]() -> char {
        for (char c = 'D'; c <= 'Z'; ++c)
            if (!used.count(c) && std::none_of(entries_.begin(), entries_.end(),
                                               [c](const Entry& e) { return e.letter == c; }))
                return c;
        return 0;
    };

    for (std::size_t i = 0; i < present.size(); ++i) {
        auto entry = entryOf(present[i]);
        if (served.count(present[i]) || (entry != entries_.end() && used.count(entry->letter))) {
            guests.push_back(i);
        } else if (entry != entries_.end()) {
            given[i] = entry->letter;
            used.insert(entry->letter);
            entry->seen = now;
            served.insert(present[i]);
        } else {
            newcomers.push_back(i);
            served.insert(present[i]);
        }
    }
    for (std::size_t i : newcomers) {
        char letter = firstFree();
        if (letter) {
            entries_.push_back({letter, now, present[i]});
        } else {
            // Every letter is remembered: the one whose volume was seen longest ago passes on.
            auto oldest = entries_.end();
            for (auto e = entries_.begin(); e != entries_.end(); ++e)
                if (!used.count(e->letter) &&
                    (oldest == entries_.end() || e->seen < oldest->seen ||
                     (e->seen == oldest->seen && e->letter < oldest->letter)))
                    oldest = e;
            if (oldest == entries_.end())
                continue;
            letter = oldest->letter;
            *oldest = {letter, now, present[i]};
        }
        given[i] = letter;
        used.insert(letter);
    }
    // Guests take a letter nobody holds and leave no trace, so the remembered one stays theirs.
    for (std::size_t i : guests) {
        given[i] = firstFree();
        used.insert(given[i]);
    }
    auto same = [](const Entry& a, const Entry& b) {
        return a.letter == b.letter && a.seen == b.seen && a.key == b.key;
    };
    if (damaged_ ||
        !std::equal(before.begin(), before.end(), entries_.begin(), entries_.end(), same)) {
        save();
        damaged_ = false;
    }
    return given;
}

} // namespace nv
