// Times the settings file at list sizes up to the largest row count: the start-up read, the
// write-back of a whole list in one batch, one edit, and the same write-back key by key.
//
//   profile_bench [seconds]   the time allowed to each unbatched write-back (default 60)

#include "platform/DriveFormConversion.h"
#include "platform/Platform.h"
#include "support/TestMachine.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::string row(int n, const char* stem) {
    return "C:\\Data\\Norvale\\" + std::string(stem) + std::to_string(n) + ".mdb";
}

std::string key(int n) {
    return "BackUpfile" + std::to_string(n);
}

void writeSettings(const fs::path& path, int rows) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << "[Basic settings]\r\nAantalFiles=" << rows
        << "\r\ndirfrom=C:\\Data\\Norvale\\\r\nDriveTarget=E:\r\nLastBackup=17-11-2026\r\n"
           "Directory=0\r\n[Backupfiles]\r\n";
    for (int n = 1; n <= rows; ++n)
        out << key(n) << "=" << row(n, "file") << "\r\n";
}

struct Figures {
    double read = 0, batch = 0, edit = 0, single = 0;
    int singleDone = 0;
};

Figures measure(nv::ProfileStore& store, const fs::path& folder, int rows, double budget) {
    Figures f;
    fs::path native = folder / ("NVbackuptool-" + std::to_string(rows) + ".ini");
    writeSettings(native, rows);
    std::string file = nv::driveFormOf(native.string());

    // Start-up: the row count, then every row.
    auto start = Clock::now();
    int count = std::atoi(store.getString("Basic settings", "AantalFiles", "?", 255, file).c_str());
    std::size_t bytes = 0;
    for (int n = 1; n <= count; ++n)
        bytes += store.getString("Backupfiles", key(n), "?", 255, file).size();
    f.read = secondsSince(start);
    if (count != rows || bytes == 0)
        std::fprintf(stderr, "read back %d rows, expected %d\n", count, rows);

    // A list operation: the count, the folder and every row, in one pass to disk.
    start = Clock::now();
    {
        nv::ProfileBatch batch(store);
        store.writeString("Basic settings", "AantalFiles", std::to_string(rows), file);
        store.writeString("Basic settings", "dirfrom", "C:\\Data\\Norvale", file);
        for (int n = 1; n <= rows; ++n)
            store.writeString("Backupfiles", key(n), row(n, "copy"), file);
    }
    f.batch = secondsSince(start);

    // One row changed, as a single pick in the list does.
    start = Clock::now();
    {
        nv::ProfileBatch batch(store);
        store.writeString("Backupfiles", key(rows / 2), row(0, "picked"), file);
    }
    f.edit = secondsSince(start);

    // The same write-back with every key on disk by itself, until the budget is spent.
    start = Clock::now();
    for (int n = 1; n <= rows; ++n) {
        store.writeString("Backupfiles", key(n), row(n, "again"), file);
        f.singleDone = n;
        if (secondsSince(start) > budget)
            break;
    }
    f.single = secondsSince(start);
    fs::remove(native);
    return f;
}

} // namespace

int main(int argc, char** argv) {
    double budget = argc > 1 ? std::atof(argv[1]) : 60.0;
    nv::ProfileStore& store = *nv::nativePlatform().profiles;
    nvtest::TempFolder temp;
    const fs::path& folder = temp.native();

    std::printf("Settings file, times in milliseconds (%s)\n\n", folder.c_str());
    std::printf("%8s %12s %14s %12s %26s\n", "rows", "start-up", "write-back", "one edit",
                "write-back, key by key");
    std::printf("%8s %12s %14s %12s %26s\n", "", "read", "(one batch)", "(one batch)",
                "(each on disk)");
    for (int rows : {1000, 10000, 32767}) {
        // The largest list is only estimated from a short run: it would take minutes.
        Figures f = measure(store, folder, rows, rows > 10000 ? budget / 4 : budget);
        char single[64];
        if (f.singleDone == rows)
            std::snprintf(single, sizeof single, "%.0f", f.single * 1000);
        else
            std::snprintf(single, sizeof single, "~%.0f (est., %d done)",
                          f.single * 1000 * rows / f.singleDone, f.singleDone);
        std::printf("%8d %12.1f %14.1f %12.1f %26s\n", rows, f.read * 1000, f.batch * 1000,
                    f.edit * 1000, single);
        std::fflush(stdout);
    }
    std::printf("\nTargets at 32767 rows: start-up read < 1000 ms, write-back < 1000 ms, one edit "
                "< 100 ms.\n");
    return 0;
}
