// The file operations both file systems must keep alike: what matches, what a copy and a move
// leave, how listings read, and the failure number each refusal carries.
#include "platform/CaseFold.h"
#include "platform/FileFailure.h"
#include "startup/FileOps.h"
#include "support/FailureOf.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#ifndef _WIN32
#include <unistd.h>
#endif

using namespace nv;
using nvtest::failureOf;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

TEST(Files, FirstMatchSeesPlainFilesOnlyInTheLettersOnDisk) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("Map/Grootboek.MDB", "x");
    t.write("Map/zonder_punt", "x");
    t.write("Namen/lijst.mdbx", "x");
    t.write("Namen/d.e", "x");
    fs::create_directories(t.native("Map/Sub.dir"));
    fs::create_directories(t.native("Leeg/Sub"));

    for (const char* spec :
         {"Map\\grootboek.mdb", "MAP\\GROOTBOEK.MDB", "Map\\*.mdb", "Map\\Grootb??k.*", "Map\\*.*"})
        EXPECT_EQ(fFirstMatch(t.drive(spec)), "Grootboek.MDB") << spec;
    EXPECT_EQ(fFirstMatch(t.drive("Map\\*.")), "zonder_punt");
    // No folder, no file below a file, no longer extension, no name with a dot for "*.".
    for (const char* spec : {"Map\\Sub.dir", "Leeg\\*.*", "Bestaatniet\\*.*", "Namen\\*.mdb",
                             "Namen\\*.", "Map\\Grootboek.MDB\\*.*", "Map\\Grootboek.MDB\\sub"})
        EXPECT_EQ(fFirstMatch(t.drive(spec)), "") << spec;
    EXPECT_FALSE(fPlainFileExists(t.drive("Map")));
    EXPECT_TRUE(fPlainFileExists(t.drive("Map\\Grootboek.mdb")));
}

// What a copy leaves (the bytes, the source's time, no temporary) is tried through the backup
// run and the restore.
TEST(Files, AMoveNeverReplaces) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("a/NV.ini", "a");
    t.write("b/NV.ini", "b");
    EXPECT_EQ(failureOf([&] { subMoveFile(t.drive("a\\NV.ini"), t.drive("b\\NV.ini")); }),
              kFailAccessRefused);
    EXPECT_EQ(t.read("b/NV.ini"), "b");
    subMoveFile(t.drive("a\\NV.ini"), t.drive("b\\Oud.ini"));
    EXPECT_EQ(t.read("b/Oud.ini"), "a");
    EXPECT_FALSE(t.exists("a/NV.ini"));
}

TEST(Files, FoldersAndDeletionsReportTheirNumbers) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("bestand.txt", "x");
    subMakeFolder(t.drive("Backup2026-11-17"));
    EXPECT_EQ(failureOf([&] { subMakeFolder(t.drive("Backup2026-11-17")); }), kFailAccessRefused);
    EXPECT_EQ(failureOf([&] { subMakeFolder(t.drive("bestand.txt")); }), kFailAccessRefused);

    t.write("Backup2026-11-17/a.mdb", "a");
    t.write("Backup2026-11-17/b.ini", "b");
    t.write("Backup2026-11-17/Sub/c.ini", "c");
    EXPECT_EQ(failureOf([&] { subRemoveFolder(t.drive("Backup2026-11-17")); }), kFailAccessRefused);
    subDeleteByPattern(t.drive("Backup2026-11-17\\*.*"));
    EXPECT_FALSE(t.exists("Backup2026-11-17/a.mdb"));
    EXPECT_TRUE(t.exists("Backup2026-11-17/Sub/c.ini"));
    subDeleteFile(t.drive("Backup2026-11-17\\Sub\\c.ini"));
    subRemoveFolder(t.drive("Backup2026-11-17\\Sub"));
    subRemoveFolder(t.drive("Backup2026-11-17"));
    EXPECT_FALSE(t.exists("Backup2026-11-17"));

    // Whatever is not there, nothing left to match included.
    const std::vector<std::function<void()>> missing = {
        [&] { subDeleteByPattern(t.drive("*.mdb")); },
        [&] { subDeleteFile(t.drive("weg.txt")); },
        [&] { subRemoveFolder(t.drive("weg")); },
        [&] { subMakeFolder(t.drive("geen\\ouder")); },
        [&] { subMakeFolder(t.drive("bestand.txt\\sub")); },
        [&] { subMoveFile(t.drive("weg.ini"), t.drive("ook-weg.ini")); },
        [&] { subCopyFile(t.drive("weg.mdb"), t.drive("x")); },
        [&] { subCopyFile(t.drive("bestand.txt"), t.drive("geen\\x")); },
        [&] { machine.platform.files->listFolders(t.drive("weg")); },
        [&] { machine.platform.files->listFiles(t.drive("weg"), "*.*"); },
        [&] { machine.platform.files->listFiles(t.drive("bestand.txt"), "*.*"); },
    };
    for (std::size_t i = 0; i < missing.size(); ++i)
        EXPECT_EQ(failureOf(missing[i]), kFailPathNotFound) << i;
    EXPECT_EQ(failureOf([&] { subCopyFile(t.drive("bestand.txt"), ""); }), kFailBadFileName);
}

TEST(Files, ListingsAreSortedWithoutCaseAndLeaveOutHiddenEntries) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    nv::FileSystem& files = *machine.platform.files;
    for (const char* name : {"beta.NVD", "Alfa.nvd", "gamma.ini", "LEESMIJ", "Backup/NV.ini",
                             ".verborgen.nvd", ".Alfa.nvd.nvtmp-4242-0"})
        t.write(std::string("Doel/") + name, "x");
    for (const char* name : {"archief", "zeta", ".oud"})
        fs::create_directories(t.native(std::string("Doel/") + name));
    t.hide("Doel/.verborgen.nvd");
    t.hide("Doel/.oud");
    // .Alfa.nvd.nvtmp-4242-0 was left by a copy that never got as far as hiding it.

    Names folders{"archief", "Backup", "zeta"};
    EXPECT_EQ(files.listFolders(t.drive("Doel")), folders);
    EXPECT_EQ(files.listFolders(t.drive("DOEL\\")), folders);
    Names all{"Alfa.nvd", "beta.NVD", "gamma.ini", "LEESMIJ"};
    EXPECT_EQ(files.listFiles(t.drive("Doel"), "*.*"), all);
    EXPECT_EQ(files.listFiles(t.drive("doel\\"), "*"), all);
    EXPECT_EQ(files.listFiles(t.drive("Doel"), "*.NVD"), (Names{"Alfa.nvd", "beta.NVD"}));
    EXPECT_EQ(files.listFiles(t.drive("Doel"), "leesmij"), Names{"LEESMIJ"});
    EXPECT_EQ(files.listFiles(t.drive("Doel"), "*."), Names{"LEESMIJ"});
    EXPECT_EQ(files.listFiles(t.drive("Doel"), "*.mdb"), Names{});
    EXPECT_EQ(files.listFolders(t.drive("Doel\\zeta")), Names{});

#ifndef _WIN32
    if (::geteuid() != 0) {
        fs::permissions(t.native("Doel/zeta"), fs::perms::none);
        EXPECT_EQ(failureOf([&] { files.listFiles(t.drive("Doel\\zeta"), "*.*"); }),
                  kFailAccessRefused);
        fs::permissions(t.native("Doel/zeta"), fs::perms::owner_all);
    }
#endif
}

TEST(Files, AnUnpluggedDriveFailsAndADriveRootLists) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    nv::FileSystem& files = *machine.platform.files;
    char missing = 0;
    for (char letter = 'Z'; letter > 'C' && !missing; --letter)
        if (!machine.platform.drives->ready(letter))
            missing = letter;
    ASSERT_NE(missing, 0);
    const std::string gone = std::string(1, missing) + ":\\Backup";
    EXPECT_EQ(failureOf([&] { files.listFolders(gone.substr(0, 3)); }), kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { files.firstMatch(gone + "\\*.*"); }), kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { files.makeFolder(gone); }), kFailDeviceUnavailable);
    EXPECT_TRUE(machine.platform.drives->ready(t.drive()[0]));

    // The drive of the temporary folder, and the first folder on the way down to it.
    std::string path = t.drive();
    std::string root = path.substr(0, 2);
    std::string first = path.substr(3, path.find('\\', 3) - 3);
    Names top = files.listFolders(root + "\\");
    EXPECT_EQ(files.listFolders(root), top);
    EXPECT_TRUE(std::any_of(top.begin(), top.end(), [&](const std::string& name) {
        return equalsIgnoringCase(name, first);
    })) << first;
    EXPECT_TRUE(std::is_sorted(top.begin(), top.end(), [](const auto& a, const auto& b) {
        return upperCase(a) < upperCase(b);
    }));
    EXPECT_NO_THROW(files.listFiles(root + "\\", "*.*"));
}

} // namespace
