// Prints what the second look at each copy's source costs: a backup of 1,000 unchanging files of
// 16 KiB through the run's own copies, with the look and without it, side by side. Rounds take
// turns; each prints the copies alone (the look lies there) and the whole backup (their flush,
// read-back, renames and the last check as well), as the best of its rounds: on a shared machine
// other work only ever slows a round down.
//
//     file_in_use_bench [work folder]
#include "backup/CopyBatch.h"
#include "platform/DriveFormConversion.h"
#include "support/FaultyMedium.h"
#include "support/Noise.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

constexpr int kFiles = 1000;
constexpr std::size_t kFileSize = 16 << 10;
constexpr int kRounds = 15;

double msSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

double best(const std::vector<double>& values) {
    return *std::min_element(values.begin(), values.end());
}

struct Times {
    std::vector<double> copies;
    std::vector<double> backup;
};

} // namespace

int main(int argc, char** argv) {
    nvtest::NativeMachine machine;
    fs::path work = argc > 1 ? fs::path(argv[1]) : machine.temp.native();
    fs::create_directories(work / "bron");
    work = fs::canonical(work);
    std::uint64_t state = 20261117;
    std::vector<std::string> names;
    for (int i = 0; i < kFiles; ++i) {
        names.push_back("f" + std::to_string(i) + ".mdb");
        std::string bytes(kFileSize, '\0');
        nvtest::fillNoise(bytes.data(), bytes.size(), state);
        std::ofstream(work / "bron" / names.back(), std::ios::binary) << bytes;
    }
    const std::string from = nv::driveFormOf((work / "bron").string()) + "\\";
    const std::string to = nv::driveFormOf((work / "stick").string());

    nvtest::NativeFiles files;
    Times with, without;
    for (int round = 0; round < 2 * kRounds; ++round) {
        files.secondLook = (round % 4 == 0 || round % 4 == 3);
        fs::create_directories(work / "stick");
        const auto start = Clock::now();
        nv::CopyBatch batch(files);
        for (const std::string& name : names)
            batch.copy(from + name, to + "\\" + name);
        const double copies = msSince(start);
        batch.commit({to});
        batch.checkPlaced();
        Times& times = files.secondLook ? with : without;
        times.copies.push_back(copies);
        times.backup.push_back(msSince(start));
        fs::remove_all(work / "stick");
    }

    std::printf("%d unchanging files of %zu KiB, best of %d rounds each, in %s\n\n", kFiles,
                kFileSize >> 10, kRounds, work.c_str());
    std::printf("%-14s %14s %14s %8s\n", "", "second look", "without", "ratio");
    const std::pair<const char*, std::vector<double> Times::*> rows[] = {
        {"copies alone", &Times::copies},
        {"whole backup", &Times::backup},
    };
    for (const auto& [what, part] : rows) {
        const double a = best(with.*part);
        const double b = best(without.*part);
        std::printf("%-14s %11.1f ms %11.1f ms %8.3f\n", what, a, b, a / b);
    }
    return 0;
}
