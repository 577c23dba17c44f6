// The file operations both file systems must keep alike: what matches, what a move leaves, how
// listings read, and the failure number each refusal carries.
#include "startup/FileOps.h"
#include "support/FailureOf.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
using nvtest::failureOf;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

TEST(Files, FirstMatchSeesPlainFilesOnlyInTheLettersOnDisk) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    for (const char* name :
         {"Map/Grootboek.MDB", "Map/zonder_punt", "Namen/lijst.mdbx", "Namen/d.e"})
        t.write(name, "x");
    fs::create_directories(t.native("Map/Sub.dir"));
    fs::create_directories(t.native("Leeg/Sub"));
    for (const char* pattern : {"Map\\grootboek.mdb", "Map\\*.mdb", "Map\\Grootb??k.*", "Map\\*.*"})
        EXPECT_EQ(fFirstMatch(t.drive(pattern)), "Grootboek.MDB") << pattern;
    EXPECT_EQ(fFirstMatch(t.drive("Map\\*.")), "zonder_punt");
    // No folder, no file below a file, no longer extension, no name with a dot for "*.".
    for (const char* pattern : {"Map\\Sub.dir", "Leeg\\*.*", "Bestaatniet\\*.*", "Namen\\*.mdb",
                                "Namen\\*.", "Map\\Grootboek.MDB\\*.*", "Map\\Grootboek.MDB\\sub"})
        EXPECT_EQ(fFirstMatch(t.drive(pattern)), "") << pattern;
    EXPECT_FALSE(fPlainFileExists(t.drive("Map")));
    EXPECT_TRUE(fPlainFileExists(t.drive("Map\\Grootboek.mdb")));
}

// What a copy leaves (the bytes, the source's time, no temporary) is tried through the backup
// run and the restore.
TEST(Files, AMoveNeverReplacesAndEachRefusalCarriesItsNumber) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    FileSystem& files = *machine.platform.files;
    for (const char* name : {"Oud/NV.ini", "Nieuw/NV.ini", "bestand.txt", "Backup/a.mdb",
                             "Backup/b.ini", "Backup/Sub/c.ini"})
        t.write(name, name);
    const std::vector<std::pair<int, std::function<void()>>> refused = {
        {kFailAccessRefused,
         [&] { subMoveFile(t.drive("Oud\\NV.ini"), t.drive("Nieuw\\NV.ini")); }},
        {kFailAccessRefused, [&] { subMakeFolder(t.drive("Backup")); }},
        {kFailAccessRefused, [&] { subRemoveFolder(t.drive("Backup")); }},
        {kFailBadFileName, [&] { subCopyFile(t.drive("bestand.txt"), ""); }},
        // Whatever is not there, nothing left to match included.
        {kFailPathNotFound, [&] { subDeleteByPattern(t.drive("*.mdb")); }},
        {kFailPathNotFound, [&] { subDeleteFile(t.drive("weg.txt")); }},
        {kFailPathNotFound, [&] { subMakeFolder(t.drive("geen\\ouder")); }},
        {kFailPathNotFound, [&] { subMoveFile(t.drive("weg.ini"), t.drive("ook-weg.ini")); }},
        {kFailPathNotFound, [&] { subCopyFile(t.drive("weg.mdb"), t.drive("x")); }},
        {kFailPathNotFound, [&] { files.listFiles(t.drive("weg"), "*.*"); }},
    };
    for (std::size_t i = 0; i < refused.size(); ++i)
        EXPECT_EQ(failureOf(refused[i].second), refused[i].first) << i;
    EXPECT_EQ(t.read("Nieuw/NV.ini"), "Nieuw/NV.ini");
    subMoveFile(t.drive("Oud\\NV.ini"), t.drive("Nieuw\\Oud.ini"));
    EXPECT_EQ(t.read("Nieuw/Oud.ini"), "Oud/NV.ini");
    EXPECT_FALSE(t.exists("Oud/NV.ini"));

    subDeleteByPattern(t.drive("Backup\\*.*"));
    EXPECT_FALSE(t.exists("Backup/a.mdb"));
    EXPECT_TRUE(t.exists("Backup/Sub/c.ini"));
}

TEST(Files, ListingsAreSortedWithoutCaseAndLeaveOutHiddenEntries) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    FileSystem& files = *machine.platform.files;
    // .Alfa.nvd.nvtmp-4242-0 was left by a copy that never got as far as hiding it.
    for (const char* name : {"beta.NVD", "Alfa.nvd", "gamma.ini", "LEESMIJ", "Backup/NV.ini",
                             ".verborgen.nvd", ".Alfa.nvd.nvtmp-4242-0"})
        t.write(std::string("Doel/") + name, "x");
    for (const char* name : {"archief", "zeta", ".oud"})
        fs::create_directories(t.native(std::string("Doel/") + name));
    t.hide("Doel/.verborgen.nvd");
    t.hide("Doel/.oud");
    EXPECT_EQ(files.listFolders(t.drive("DOEL\\")), (Names{"archief", "Backup", "zeta"}));
    EXPECT_EQ(files.listFiles(t.drive("doel"), "*.*"),
              (Names{"Alfa.nvd", "beta.NVD", "gamma.ini", "LEESMIJ"}));
    EXPECT_EQ(files.listFiles(t.drive("Doel\\"), "*.NVD"), (Names{"Alfa.nvd", "beta.NVD"}));
    EXPECT_EQ(files.listFolders(t.drive("Doel\\zeta")), Names{});
}

TEST(Files, AnUnpluggedDriveFails) {
    nvtest::TestMachine machine;
    FileSystem& files = *machine.platform.files;
    char missing = 'Z';
    while (missing > 'D' && machine.platform.drives->ready(missing))
        --missing;
    ASSERT_FALSE(machine.platform.drives->ready(missing));
    const std::string gone = std::string(1, missing) + ":\\Backup";
    EXPECT_EQ(failureOf([&] { files.listFolders(gone.substr(0, 3)); }), kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { files.firstMatch(gone + "\\*.*"); }), kFailDeviceUnavailable);
    EXPECT_EQ(failureOf([&] { files.makeFolder(gone); }), kFailDeviceUnavailable);
}

} // namespace
