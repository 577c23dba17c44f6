#include "platform/FileFailure.h"
#include "platform/Wildcard.h"
#include "startup/FileOps.h"
#include "support/TestMachine.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>
#else
#include <unistd.h>
#endif

using namespace nv;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

// A dot name is hidden on Linux; Windows wants the attribute as well.
void hide(const nvtest::TempFolder& t, const std::string& relative) {
#ifdef _WIN32
    std::wstring path = t.native(relative).wstring();
    ASSERT_TRUE(
        SetFileAttributesW(path.c_str(), GetFileAttributesW(path.c_str()) | FILE_ATTRIBUTE_HIDDEN));
#else
    (void)t;
    (void)relative;
#endif
}

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

TEST(Files, ListingsAreSortedWithoutCaseAndLeaveOutHiddenEntries) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    nv::FileSystem& files = *machine.platform.files;
    t.write("Doel/beta.NVD", "x");
    t.write("Doel/Alfa.nvd", "x");
    t.write("Doel/gamma.ini", "x");
    t.write("Doel/LEESMIJ", "x");
    t.write("Doel/Backup2026-11-17/NV.ini", "x");
    fs::create_directories(t.native("Doel/archief"));
    fs::create_directories(t.native("Doel/zeta"));
    t.write("Doel/.verborgen.nvd", "x");
    hide(t, "Doel/.verborgen.nvd");
    fs::create_directories(t.native("Doel/.oud"));
    hide(t, "Doel/.oud");
    // Left by a copy that never got as far as hiding it.
    t.write("Doel/.Alfa.nvd.nvtmp-4242-0", "half");

    Names folders{"archief", "Backup2026-11-17", "zeta"};
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
    EXPECT_EQ(files.listFiles(t.drive("Doel\\zeta"), "*.*"), Names{});
}

TEST(Files, ListingAFolderThatIsNotThereFailsAndADriveRootLists) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    nv::FileSystem& files = *machine.platform.files;
    t.write("bestand.txt", "x");
    EXPECT_EQ(failureOf([&] { files.listFolders(t.drive("weg")); }), kFailPathNotFound);
    EXPECT_EQ(failureOf([&] { files.listFiles(t.drive("weg"), "*.*"); }), kFailPathNotFound);
    EXPECT_EQ(failureOf([&] { files.listFiles(t.drive("bestand.txt"), "*.*"); }),
              kFailPathNotFound);

    char missing = 0;
    for (char letter = 'Z'; letter > 'C' && !missing; --letter)
        if (!machine.platform.drives->ready(letter))
            missing = letter;
    ASSERT_NE(missing, 0);
    EXPECT_EQ(failureOf([&] { files.listFolders(std::string(1, missing) + ":\\"); }),
              kFailDeviceUnavailable);

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

#ifndef _WIN32
TEST(Files, LinkedEntriesListAsWhatTheyPointTo) {
    nvtest::TestMachine machine;
    auto& t = machine.temp;
    nv::FileSystem& files = *machine.platform.files;
    t.write("echt/data.nvd", "x");
    fs::create_directories(t.native("map/Sub"));
    fs::create_directory_symlink(t.native("echt"), t.native("map/naar-map"));
    fs::create_symlink(t.native("echt/data.nvd"), t.native("map/Naar-bestand.nvd"));
    fs::create_symlink(t.native("echt/weg.nvd"), t.native("map/kapot.nvd"));
    EXPECT_EQ(files.listFolders(t.drive("map")), (Names{"naar-map", "Sub"}));
    EXPECT_EQ(files.listFiles(t.drive("map"), "*.nvd"), Names{"Naar-bestand.nvd"});

    if (::geteuid() != 0) {
        fs::permissions(t.native("echt"), fs::perms::none);
        EXPECT_EQ(failureOf([&] { files.listFiles(t.drive("echt"), "*.*"); }), kFailAccessRefused);
    }
}
#endif

} // namespace
