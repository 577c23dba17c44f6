// Prints how long the start-up takes over settings files with long lists, and how long one
// whole list takes to write back key by key, as a window operation does.
#include "platform/DriveFormConversion.h"
#include "platform/Platform.h"
#include "production/KnownFile.h"
#include "startup/AppSettings.h"
#include "startup/Main.h"
#include "startup/Settings.h"
#include "support/TestMachine.h"

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

namespace {

class NoWindows : public nv::StartWindows {
public:
    void loadMainWindow() override {}
    void showMainWindow() override {}
    void loadSplash() override {}
    void showSplash() override {}
};

double millisecondsSince(Clock::time_point start) {
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// Writes the whole list back one key at a time, as it stands after its first row was removed,
// so that every key really changes.
double writeBack(bool oneBatch) {
    auto& rows = nv::AppSettings.strFiles;
    rows.erase(rows.begin() + 1);
    nv::AppSettings.AantalFiles = static_cast<int16_t>(rows.size() - 1);
    auto start = Clock::now();
    const std::string& ini = nv::AppSettings.strIniFile;
    auto writeAll = [&] {
        for (int n = 1; n <= nv::AppSettings.AantalFiles; ++n)
            nv::subWriteIni(ini, nv::kSectionFiles, nv::rowKey(n),
                            rows[static_cast<std::size_t>(n)]);
        nv::subWriteIni(ini, nv::kSectionBasic, "AantalFiles",
                        std::to_string(nv::AppSettings.AantalFiles));
    };
    if (oneBatch) {
        nv::ProfileBatch batch(*nv::platform().profiles);
        writeAll();
    } else {
        writeAll();
    }
    return millisecondsSince(start);
}

} // namespace

int main() {
    nvtest::NativeMachine machine;
    fs::path program = machine.temp.native("Norvale");
    fs::create_directories(program);
    for (int row = 0; row <= 10; ++row)
        if (row != 8 && row != 9)
            std::ofstream(program / nv::fKnownFileName(row)) << "data";

    nvtest::FixedProcess process;
    process.path = nv::driveFormOf(program.string());
    nv::ScopedPlatformPart<nv::Process> useProcess(&nv::Platform::process, &process);
    NoWindows windows;

    std::printf("%8s  %14s  %22s  %24s\n", "rows", "start-up (ms)", "write-back batch (ms)",
                "write-back per key (ms)");
    for (int rows : {1000, 10000, 32767}) {
        const std::string folder = process.path + "\\";
        std::ofstream ini(program / "NVbackuptool.ini", std::ios::binary | std::ios::trunc);
        ini << "[Basic settings]\r\nAantalFiles=" << rows << "\r\n[Backupfiles]\r\n";
        for (int n = 1; n <= rows; ++n) {
            ini << "BackUpfile" << n << "=";
            if (n <= 9)
                ini << folder << nv::fKnownFileName(n == 9 ? 10 : n - 1);
            else
                ini << "C:\\Data\\Klanten\\map" << n % 97 << "\\bestand" << n << ".doc";
            ini << "\r\n";
        }
        ini.close();

        auto start = Clock::now();
        nv::Main(windows);
        double startup = millisecondsSince(start);
        if (nv::AppSettings.AantalFiles != rows) {
            std::printf("start-up read %d rows instead of %d\n", nv::AppSettings.AantalFiles, rows);
            return 1;
        }
        double batch = writeBack(true);
        // Each key on disk on its own is slow; measured at the smallest size only.
        char perKey[32] = "not measured";
        if (rows == 1000)
            std::snprintf(perKey, sizeof perKey, "%.1f", writeBack(false));
        std::printf("%8d  %14.1f  %22.1f  %24s\n", rows, startup, batch, perKey);
    }
    return 0;
}
