#include "platform/FileFailure.h"
#include "startup/FileOps.h"
#include "support/TestMachine.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

int32_t failureOf(const std::function<void()>& operation) {
    try {
        operation();
    } catch (const FileFailure& failure) {
        EXPECT_FALSE(failure.Description.empty());
        return failure.Number;
    }
    return 0;
}

TEST(Files, FirstMatchSeesPlainFilesOnlyInTheLettersOnDisk) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("Map/Grootboek.MDB", "x");
    t.write("Map/zonder_punt", "x");
    fs::create_directories(t.native("Map/Sub.dir"));
    fs::create_directories(t.native("Leeg/Sub"));

    EXPECT_EQ(fFirstMatch(t.drive("Map\\grootboek.mdb")), "Grootboek.MDB");
    EXPECT_EQ(fFirstMatch(t.drive("MAP\\GROOTBOEK.MDB")), "Grootboek.MDB");
    EXPECT_EQ(fFirstMatch(t.drive("Map\\*.mdb")), "Grootboek.MDB");
    EXPECT_EQ(fFirstMatch(t.drive("Map\\*.")), "zonder_punt");
    EXPECT_EQ(fFirstMatch(t.drive("Map\\Grootb??k.*")), "Grootboek.MDB");
    EXPECT_EQ(fFirstMatch(t.drive("Map\\*.*")), "Grootboek.MDB");
    EXPECT_EQ(fFirstMatch(t.drive("Map\\Sub.dir")), "");     // a folder is no match
    EXPECT_EQ(fFirstMatch(t.drive("Leeg\\*.*")), "");        // only subfolders
    EXPECT_EQ(fFirstMatch(t.drive("Bestaatniet\\*.*")), ""); // no folder at all
    EXPECT_FALSE(fPlainFileExists(t.drive("Map")));
    EXPECT_TRUE(fPlainFileExists(t.drive("Map\\Grootboek.mdb")));
}

TEST(Files, CopyReplacesTheDestinationAndKeepsTheSourceTime) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("bron/data.mdb", std::string(3 << 20, 'b'));
    t.write("doel/data.mdb", "old");
    auto stamp = fs::file_time_type::clock::now() - std::chrono::hours(24 * 30);
    fs::last_write_time(t.native("bron/data.mdb"), stamp);

    subCopyFile(t.drive("bron\\data.mdb"), t.drive("doel\\data.mdb"));
    EXPECT_EQ(t.read("doel/data.mdb"), t.read("bron/data.mdb"));
    EXPECT_TRUE(t.exists("bron/data.mdb"));
    auto copied = fs::last_write_time(t.native("doel/data.mdb"));
    EXPECT_LT(std::chrono::abs(copied - stamp), std::chrono::seconds(2));
    // Nothing but the copy is left in the folder.
    EXPECT_EQ(std::distance(fs::directory_iterator(t.native("doel")), fs::directory_iterator()), 1);

    EXPECT_EQ(failureOf([&] { subCopyFile(t.drive("bron\\weg.mdb"), t.drive("doel\\x")); }),
              kFailPathNotFound);
    EXPECT_EQ(failureOf([&] { subCopyFile(t.drive("bron\\data.mdb"), t.drive("geen\\x")); }),
              kFailPathNotFound);
}

TEST(Files, MoveNeverReplaces) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    t.write("a/NV.ini", "a");
    t.write("b/NV.ini", "b");
    EXPECT_EQ(failureOf([&] { subMoveFile(t.drive("a\\NV.ini"), t.drive("b\\NV.ini")); }),
              kFailAccessRefused);
    EXPECT_EQ(t.read("b/NV.ini"), "b");
    EXPECT_EQ(failureOf([&] { subMoveFile(t.drive("a\\weg.ini"), t.drive("b\\weg.ini")); }),
              kFailPathNotFound);
    fs::create_directories(t.native("c"));
    subMoveFile(t.drive("a\\NV.ini"), t.drive("c\\NV.ini"));
    EXPECT_EQ(t.read("c/NV.ini"), "a");
    EXPECT_FALSE(t.exists("a/NV.ini"));
}

TEST(Files, FoldersAndDeletionsReportTheirNumbers) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    subMakeFolder(t.drive("Backup2026-11-17"));
    EXPECT_EQ(failureOf([&] { subMakeFolder(t.drive("Backup2026-11-17")); }), kFailAccessRefused);
    EXPECT_EQ(failureOf([&] { subMakeFolder(t.drive("geen\\ouder")); }), kFailPathNotFound);

    t.write("Backup2026-11-17/a.mdb", "a");
    t.write("Backup2026-11-17/b.ini", "b");
    t.write("Backup2026-11-17/Sub/c.ini", "c");
    EXPECT_EQ(failureOf([&] { subRemoveFolder(t.drive("Backup2026-11-17")); }), kFailAccessRefused);
    subDeleteByPattern(t.drive("Backup2026-11-17\\*.*"));
    EXPECT_FALSE(t.exists("Backup2026-11-17/a.mdb"));
    EXPECT_TRUE(t.exists("Backup2026-11-17/Sub/c.ini"));
    // Nothing left to match is a failure too.
    EXPECT_NE(failureOf([&] { subDeleteByPattern(t.drive("Backup2026-11-17\\*.*")); }), 0);
    subDeleteFile(t.drive("Backup2026-11-17\\Sub\\c.ini"));
    subRemoveFolder(t.drive("Backup2026-11-17\\Sub"));
    subRemoveFolder(t.drive("Backup2026-11-17"));
    EXPECT_FALSE(t.exists("Backup2026-11-17"));
    EXPECT_EQ(failureOf([&] { subDeleteFile(t.drive("weg.txt")); }), kFailPathNotFound);
}

} // namespace
