// Prints the throughput of the backup run's copies (temporary files put in place in groups: one
// flush of their data, the read-back of each from the medium, the renames, the flush of the
// folder, and at the end the second look at every copy) beside the same copies without the
// read-backs and beside cp followed by sync, on the same target: one 1 GiB file, and 2,000 files
// of 64 KiB. As root it also measures a tmpfs target.
//
//     backup_bench [work folder]
#include "backup/CopyBatch.h"
#include "platform/DriveFormConversion.h"
#include "platform/Platform.h"
#include "support/Noise.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <sys/mount.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr std::uintmax_t kMiB = 1 << 20;
constexpr std::uintmax_t kLargeSize = 1024 * kMiB;
constexpr int kSmallCount = 2000;
constexpr std::size_t kSmallSize = 64 << 10;
constexpr int kRounds = 6;

void makeSources(const fs::path& sources) {
    fs::create_directories(sources / "small");
    std::uint64_t state = 88172645463325252ull;
    std::vector<char> block(kMiB);
    std::ofstream big(sources / "big.bin", std::ios::binary);
    for (std::uintmax_t done = 0; done < kLargeSize; done += kMiB) {
        nvtest::fillNoise(block.data(), block.size(), state);
        big.write(block.data(), static_cast<std::streamsize>(block.size()));
    }
    std::vector<char> small(kSmallSize);
    for (int i = 0; i < kSmallCount; ++i) {
        nvtest::fillNoise(small.data(), small.size(), state);
        std::ofstream(sources / "small" / ("f" + std::to_string(i) + ".dat"), std::ios::binary)
            .write(small.data(), static_cast<std::streamsize>(small.size()));
    }
}

bool shell(const std::string& command) {
    return std::system(command.c_str()) == 0;
}

std::string quoted(const fs::path& path) {
    return "'" + path.string() + "'";
}

// MB/s of one timed step, with the machine's dirty pages written out before it starts.
double throughput(std::uintmax_t bytes, const std::function<void()>& step) {
    ::sync();
    auto start = Clock::now();
    step();
    double seconds = std::chrono::duration<double>(Clock::now() - start).count();
    return static_cast<double>(bytes) / 1e6 / seconds;
}

// The best round: on a shared machine other work only ever slows a round down.
double best(const std::vector<double>& values) {
    return *std::max_element(values.begin(), values.end());
}

// The middle of the ratios of each round, taken side by side: the disk's own pace drifts from
// round to round (an ext4 slows its file creation for a while after many deletions), so the
// best of one kind and the best of another may come from different moments.
double ratio(const std::vector<double>& ours, const std::vector<double>& theirs) {
    std::vector<double> ratios;
    for (std::size_t i = 0; i < ours.size(); ++i)
        ratios.push_back(ours[i] / theirs[i]);
    std::sort(ratios.begin(), ratios.end());
    const std::size_t mid = ratios.size() / 2;
    return ratios.size() % 2 ? ratios[mid] : (ratios[mid - 1] + ratios[mid]) / 2;
}

std::string rounds(const std::vector<double>& values) {
    std::string text;
    for (double v : values)
        text += (text.empty() ? "" : " ") + std::to_string(static_cast<int>(v + 0.5));
    return text;
}

struct Figures {
    std::vector<double> ours;
    std::vector<double> unread; // the same copies, not read back
    std::vector<double> cp;
};

// The same groups as CopyBatch without the read-backs after the flush and at the end: what they
// cost. A large copy's reading behind its own writing is part of its staging and stays.
void copyUnread(nv::FileSystem& files,
                const std::vector<std::pair<std::string, std::string>>& copies,
                const std::string& folder) {
    std::vector<nv::StagedCopy> group;
    std::uintmax_t bytes = 0;
    auto commit = [&] {
        files.flushStaged(group);
        for (const nv::StagedCopy& copy : group)
            files.placeStaged(copy);
        files.flushFolder(folder);
        group.clear();
        bytes = 0;
    };
    for (const auto& [from, to] : copies) {
        group.push_back(*files.stageCopy(from, to));
        bytes += group.back().written.size;
        if (group.size() >= nv::CopyBatch::kMaxFiles || bytes >= nv::CopyBatch::kMaxBytes)
            commit();
    }
    if (!group.empty())
        commit();
}

// Copies through the run's own copy, the same without its read-backs, and through cp and sync,
// into target; rounds turn which goes first.
Figures measure(const fs::path& sources, const fs::path& target, bool large) {
    const std::uintmax_t bytes = large ? kLargeSize : kSmallCount * kSmallSize;
    std::vector<double> ours, unread, cp;
    for (int round = 0; round < kRounds; ++round) {
        fs::path mine = target / "ours";
        fs::path theirs = target / "cp";
        std::string folder = nv::driveFormOf(mine.string());
        std::vector<std::pair<std::string, std::string>> copies;
        if (large) {
            copies.emplace_back(nv::driveFormOf((sources / "big.bin").string()),
                                folder + "\\big.bin");
        } else {
            std::string from = nv::driveFormOf((sources / "small").string()) + "\\";
            for (int i = 0; i < kSmallCount; ++i) {
                std::string name = "f" + std::to_string(i) + ".dat";
                copies.emplace_back(from + name, folder + "\\" + name);
            }
        }
        auto runOurs = [&] {
            fs::create_directories(mine);
            ours.push_back(throughput(bytes, [&] {
                nv::CopyBatch batch(*nv::platform().files);
                for (const auto& [from, to] : copies)
                    batch.copy(from, to);
                batch.commit({folder});
                batch.checkPlaced();
            }));
            fs::remove_all(mine);
        };
        auto runUnread = [&] {
            fs::create_directories(mine);
            unread.push_back(
                throughput(bytes, [&] { copyUnread(*nv::platform().files, copies, folder); }));
            fs::remove_all(mine);
        };
        auto runCp = [&] {
            fs::create_directories(theirs);
            std::string command =
                large ? "cp " + quoted(sources / "big.bin") + " " + quoted(theirs / "big.bin")
                      : "cp -r " + quoted(sources / "small") + "/. " + quoted(theirs);
            cp.push_back(throughput(bytes, [&] {
                if (!shell(command + " && sync"))
                    std::fprintf(stderr, "backup_bench: cp failed\n");
            }));
            fs::remove_all(theirs);
        };
        const std::function<void()> order[] = {runOurs, runUnread, runCp};
        for (int i = 0; i < 3; ++i)
            order[(round + i) % 3]();
    }
    return {ours, unread, cp};
}

void report(const char* target, const char* what, const Figures& f, double goal) {
    const double proven = ratio(f.ours, f.cp);
    std::printf("%-12s %-22s %10.1f %10.1f %10.1f %8.2f %8.2f   %s (goal >= %.2f)\n", target, what,
                best(f.ours), best(f.unread), best(f.cp), proven, ratio(f.unread, f.cp),
                proven >= goal ? "ok" : "below", goal);
    std::printf("%-12s %-22s rounds: read back %s; not read back %s; cp+sync %s\n", "", "",
                rounds(f.ours).c_str(), rounds(f.unread).c_str(), rounds(f.cp).c_str());
}

} // namespace

int main(int argc, char** argv) {
    // A folder given on the command line stays; the machine's own temporary one goes.
    nvtest::NativeMachine machine;
    fs::path work = argc > 1 ? fs::path(argv[1]) : machine.temp.native();
    fs::create_directories(work);
    work = fs::canonical(work);
    std::printf("Making the sources in %s (1 GiB and %d x 64 KiB) ...\n", work.c_str(),
                kSmallCount);
    std::fflush(stdout);
    makeSources(work / "sources");

    std::vector<std::pair<const char*, fs::path>> targets{{"temp folder", work / "target"}};
    fs::path ram = work / "tmpfs";
    bool mounted = false;
    if (::geteuid() == 0) {
        fs::create_directories(ram);
        mounted = ::mount("nvbench", ram.c_str(), "tmpfs", 0, "size=1200m") == 0;
        if (mounted)
            targets.emplace_back("tmpfs", ram);
    }

    std::printf("\nBest of %d rounds, MB/s (1 MB = 10^6 bytes); read back = the run's copies, "
                "proven; not read back = the same without the read-backs after the flush; ratios "
                "to cp + sync, the median of each round's side by side\n\n",
                kRounds);
    std::printf("%-12s %-22s %10s %10s %10s %8s %8s\n", "target", "what", "read back", "not read",
                "cp+sync", "ratio", "ratio nr");
    for (const auto& [label, folder] : targets) {
        fs::create_directories(folder);
        report(label, "1 GiB file", measure(work / "sources", folder, true), 0.6);
        std::fflush(stdout);
        report(label, "2000 files of 64 KiB", measure(work / "sources", folder, false), 0.6);
        std::fflush(stdout);
    }

    if (mounted)
        ::umount2(ram.c_str(), MNT_DETACH);
    return 0;
}
