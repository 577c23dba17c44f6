// Kills backups and restores of the real core with SIGKILL at random moments, then runs one of
// each to its end, and prints what the kills left: bad files (a file under its own name whose
// bytes are no version of its source) and leftovers (hidden copy temporaries).
//
//     kill_bench [backups] [restores] [seed]
//
// The sources change between rounds, so that every run has something new to write; every
// version is kept by its hash. Backups alternate between the flat and the mirrored layout.
#include "backup/BackupRun.h"
#include "platform/DriveFormConversion.h"
#include "platform/FileSystem.h"
#include "platform/Platform.h"
#include "restore/RestoreRun.h"
#include "startup/AppSettings.h"
#include "support/Noise.h"
#include "support/RestoreRows.h"
#include "support/TestMachine.h"
#include "support/TestStick.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

// Sizes of the production files: a few large ones to be killed in the middle of, many small.
const std::vector<std::size_t> kSizes{12 << 20, 6 << 20, 3 << 20, 1 << 20, 256 << 10, 64 << 10,
                                      16 << 10, 4 << 10, 1 << 10, 100,     10,        0};

std::uint64_t hashOf(const std::string& bytes) {
    std::uint64_t h = 1469598103934665603ull;
    for (unsigned char c : bytes)
        h = (h ^ c) * 1099511628211ull;
    return h ^ bytes.size();
}

std::string readAll(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

// Every version each file name has had, by hash.
using Versions = std::map<std::string, std::set<std::uint64_t>>;

// Writes a new version of each file in folder, whole (temporary and rename), and notes it.
void newVersions(const fs::path& folder, Versions& versions, std::mt19937_64& random) {
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
        const std::string name = "NV_Bestand" + std::to_string(i) + ".mdb";
        const std::string bytes = nvtest::noise(kSizes[i], random() | 1);
        std::ofstream(folder / ".nieuw", std::ios::binary).write(bytes.data(), bytes.size());
        fs::rename(folder / ".nieuw", folder / name);
        versions[name].insert(hashOf(bytes));
    }
}

// The copy temporaries at any depth below folder.
int leftoversIn(const fs::path& folder) {
    int count = 0;
    for (const auto& entry : fs::recursive_directory_iterator(folder))
        count += nv::isCopyTemporary(entry.path().filename().string());
    return count;
}

struct Count {
    int files = 0, bad = 0, leftovers = 0;
};

// The files at any depth below folder: plain ones checked against the versions of their name.
Count look(const fs::path& folder, const Versions& versions) {
    Count count;
    for (const auto& entry : fs::recursive_directory_iterator(folder)) {
        if (!entry.is_regular_file())
            continue;
        const std::string name = entry.path().filename().string();
        if (nv::isCopyTemporary(name)) {
            ++count.leftovers;
            continue;
        }
        if (name[0] == '.' || name == "NVbackuptool.ini")
            continue;
        ++count.files;
        auto known = versions.find(name);
        if (known == versions.end() || !known->second.count(hashOf(readAll(entry.path()))))
            ++count.bad;
    }
    return count;
}

class YesToAll : public nv::MessageBoxes {
public:
    nv::Answer show(const nv::MessageBoxRequest& request) override {
        last = request.title;
        return request.buttons == nv::Buttons::YesNo ? nv::Answer::Yes : nv::Answer::OK;
    }
    std::string last;
};

class Unseen : public nv::BackupWindows {
public:
    void subShowCopyWindow() override {}
    void setProgressMax(int) override {}
    void setProgressValue(int) override {}
    void setCopyText(const std::string&) override {}
    void closeCopyWindow() override {}
    void setStatusText(const std::string&) override {}
    void RefreshStatus() override {}
    void refreshTargetDirectories() override {}
};

void backUp() {
    Unseen windows;
    int16_t intLoop = 0;
    std::string folder;
    nv::Cmd_Backup_Click(windows, intLoop, folder);
}

std::string restore(const std::vector<std::string>& rows, const std::string& from) {
    nvtest::RestoreRows list(rows);
    int16_t intLoop = 0;
    return nv::fRestoreSelectedRows(list, from, intLoop);
}

// Runs work in a child and kills it after wait; true when it ended by itself first.
bool killedAfter(const std::function<void()>& work, std::chrono::microseconds wait) {
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
    }
    std::this_thread::sleep_for(wait);
    ::kill(child, SIGKILL);
    int status = 0;
    ::waitpid(child, &status, 0);
    return !WIFSIGNALED(status);
}

std::chrono::microseconds timed(const std::function<void()>& work) {
    const auto start = Clock::now();
    work();
    return std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
}

} // namespace

int main(int argc, char** argv) {
    const int backups = argc > 1 ? std::atoi(argv[1]) : 100;
    const int restores = argc > 2 ? std::atoi(argv[2]) : 30;
    const std::uint64_t seed =
        argc > 3 ? std::strtoull(argv[3], nullptr, 10) : std::random_device{}();
    std::mt19937_64 random(seed);

    nvtest::NativeMachine machine;
    YesToAll boxes;
    nv::ScopedPlatformPart<nv::MessageBoxes> useBoxes(&nv::Platform::boxes, &boxes);
    const nvtest::TestStick testStick(machine.temp);
    const fs::path stick = testStick.native();
    const fs::path production = machine.temp.native("prod");
    fs::create_directories(production);

    Versions versions;
    newVersions(production, versions, random);
    auto& s = nv::AppSettings;
    s.DriveTarget = testStick.drive();
    s.strIniFile = machine.temp.drive("prod\\NVbackuptool.ini");
    s.strFiles = {""};
    std::vector<std::string> rows;
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
        rows.push_back(machine.temp.drive("prod\\NV_Bestand" + std::to_string(i) + ".mdb"));
        s.strFiles.push_back(rows.back());
    }
    s.AantalFiles = static_cast<int16_t>(rows.size());

    std::printf("seed %llu, work folder %s\n", static_cast<unsigned long long>(seed),
                machine.temp.native().c_str());
    const auto fullBackup = timed(backUp);
    std::printf("one backup of %zu files takes %.1f ms\n", rows.size(), fullBackup.count() / 1e3);
    std::fflush(stdout);

    int ended = 0;
    int leftBehind = 0; // temporaries seen right after each kill, before the next run
    // Runs that end before their kill do not count; the kills go on until enough have landed.
    for (int round = 0; round - ended < backups; ++round) {
        s.Directory = static_cast<uint8_t>(round % 2);
        newVersions(production, versions, random);
        std::uniform_int_distribution<long> moment(0, fullBackup.count() * 12 / 10);
        const int before = leftoversIn(stick);
        ended += killedAfter(backUp, std::chrono::microseconds(moment(random)));
        leftBehind += std::max(0, leftoversIn(stick) - before);
    }
    const Count killed = look(stick, versions);
    std::printf("\n%d backups killed (%d ended before the kill): %d temporaries left by the "
                "kills; now %d files, %d bad, %d leftovers\n",
                backups, ended, leftBehind, killed.files, killed.bad, killed.leftovers);
    boxes.last.clear();
    backUp();
    const Count after = look(stick, versions);
    std::printf("after one more backup (box \"%s\"): %d files, %d bad, %d leftovers\n",
                boxes.last.c_str(), after.files, after.bad, after.leftovers);
    std::fflush(stdout);

    // Restores from the backup just made, over production files that have moved on since.
    std::string newest;
    for (const auto& entry : fs::directory_iterator(stick))
        if (entry.is_directory() && fs::exists(entry.path() / "NV_Bestand0.mdb") &&
            fs::last_write_time(entry.path()) >=
                (newest.empty() ? fs::file_time_type::min() : fs::last_write_time(newest)))
            newest = entry.path().string();
    const std::string from = nv::driveFormOf(newest);
    const auto fullRestore = timed([&] { restore(rows, from); });
    std::printf("\none restore of %zu files takes %.1f ms\n", rows.size(),
                fullRestore.count() / 1e3);
    int badDuring = 0;
    ended = 0;
    leftBehind = 0;
    for (int round = 0; round - ended < restores; ++round) {
        newVersions(production, versions, random);
        std::uniform_int_distribution<long> moment(0, fullRestore.count() * 12 / 10);
        const int before = leftoversIn(production);
        ended +=
            killedAfter([&] { restore(rows, from); }, std::chrono::microseconds(moment(random)));
        const Count now = look(production, versions);
        badDuring += now.bad;
        leftBehind += std::max(0, now.leftovers - before);
    }
    const Count restoreKilled = look(production, versions);
    std::printf("%d restores killed (%d ended before the kill): %d bad files seen after the "
                "kills, %d temporaries left by the kills; now %d leftovers\n",
                restores, ended, badDuring, leftBehind, restoreKilled.leftovers);
    const std::string caption = restore(rows, from);
    const Count restored = look(production, versions);
    int equal = 0;
    for (std::size_t i = 0; i < kSizes.size(); ++i) {
        const std::string name = "NV_Bestand" + std::to_string(i) + ".mdb";
        equal += readAll(production / name) == readAll(fs::path(newest) / name);
    }
    std::printf(
        "after one more restore: %d of %zu files as in the backup, %d bad, %d leftovers%s\n", equal,
        kSizes.size(), restored.bad, restored.leftovers,
        caption.find("gereed") == std::string::npos ? " (failed)" : "");
    return after.bad + after.leftovers + restored.bad + restored.leftovers + badDuring == 0 ? 0 : 1;
}
