// The Linux file system behind the drive letters: names looked up in other letters through its
// index of folders, which must answer as a fresh listing would whoever changed the folder and
// however fast, and what a prepared drive holds besides files and folders (links to elsewhere,
// FIFOs, device nodes), which is never listed, followed or written through.
#include "platform/posix/DriveTable.h"
#include "platform/posix/FolderIndex.h"
#include "platform/posix/PosixFileSystem.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <thread>

using namespace nv;
namespace fs = std::filesystem;

namespace {

class PosixFiles : public ::testing::Test {
protected:
    void SetUp() override { table.setFolder('T', temp.native().string()); }

    nvtest::TempFolder temp;
    DriveTable table{DriveTable::foldersOnly()};
    PosixFileSystem files{table};
};

// Another program's change can fall in the same clock tick as the last listing, so a folder's
// times alone could not tell it. Each step writes (+), removes (-) or moves (>) and looks.
TEST_F(PosixFiles, OtherWritersChangesShowAtOnce) {
    const std::tuple<std::string, std::string, std::string> steps[] = {
        {"+Data/NV.ini", "data\\nieuw.txt", ""},
        {"+Data/Nieuw.txt", "data\\NIEUW.TXT", "Nieuw.txt"},
        {"Data/Nieuw.txt>Data/NIEUW.txt", "data\\nieuw.txt", "NIEUW.txt"},
        {"-Data/NIEUW.txt", "data\\nieuw.txt", ""},
        {"Data>DATA2", "data2\\nv.ini", "NV.ini"}, // a folder in other letters
        // A folder whose parent moves hears nothing of it, and another takes its place.
        {"+a/data/x.txt", "a\\data\\X.TXT", "x.txt"},
        {"a>a.oud", "a\\data\\X.TXT", ""},
        {"+a/data/Y.txt", "a\\data\\y.txt", "Y.txt"},
    };
    for (const auto& [change, path, found] : steps) {
        if (change[0] == '+')
            temp.write(change.substr(1), "x");
        else if (change[0] == '-')
            fs::remove(temp.native(change.substr(1)));
        else
            fs::rename(temp.native(change.substr(0, change.find('>'))),
                       temp.native(change.substr(change.find('>') + 1)));
        EXPECT_EQ(files.firstMatch("T:\\" + path), found) << change;
    }
}

// The copy runs on a worker thread while the window's thread may ask the same file system.
TEST_F(PosixFiles, TheProgramsOwnChangesAndACopyThreadKeepTheNamesRight) {
    temp.write("bron.dat", "inhoud");
    temp.write("Backup/Vast.txt", "x");
    std::thread copier([&] {
        for (int i = 0; i < 60; ++i)
            files.copyFile("T:\\bron.dat", "T:\\Backup\\f" + std::to_string(i) + ".dat");
    });
    int wrong = 0;
    for (int i = 0; i < 300; ++i)
        wrong += files.firstMatch("T:\\BACKUP\\vast.TXT") != "Vast.txt";
    copier.join();
    EXPECT_EQ(wrong, 0);
    // A copy of a batch, staged first and flushed with the others before it takes its name.
    auto staged = files.stageCopy("T:\\bron.dat", "T:\\backup\\F60.DAT");
    ASSERT_TRUE(staged);
    files.flushStaged({*staged});
    files.placeStaged(*staged);
    // A copy onto a name in other letters replaces that file instead of adding a second one.
    temp.write("bron.dat", "nieuw");
    files.copyFile("T:\\bron.dat", "T:\\backup\\F3.DAT");
    files.moveFile("T:\\backup\\F1.DAT", "T:\\backup\\g1.dat");
    files.deleteFile("T:\\BACKUP\\F2.DAT");
    EXPECT_EQ(temp.read("Backup/f3.dat"), "nieuw");
    EXPECT_EQ(files.firstMatch("T:\\BACKUP\\F7.DAT"), "f7.dat");
    EXPECT_EQ(files.firstMatch("T:\\backup\\f60.dat"), "F60.DAT");
    EXPECT_EQ(files.firstMatch("T:\\backup\\F1.DAT"), "");
    EXPECT_EQ(files.firstMatch("T:\\backup\\G1.DAT"), "g1.dat");
    EXPECT_EQ(files.firstMatch("T:\\backup\\f2.dat"), "");
    // 61 copies and Vast.txt, one deleted: the copy onto F3.DAT added none.
    EXPECT_EQ(files.listFiles("T:\\backup", "*.*").size(), 61u);
}

TEST_F(PosixFiles, MoreFoldersThanTheIndexHoldsStayRight) {
    const int count = static_cast<int>(FolderIndex::kMaxFolders) + 8;
    for (int i = 0; i < count; ++i) {
        temp.write("d" + std::to_string(i) + "/a.txt", "x");
        EXPECT_EQ(files.firstMatch("T:\\d" + std::to_string(i) + "\\A.TXT"), "a.txt");
    }
    for (int i = 0; i < count; ++i)
        fs::rename(temp.native("d" + std::to_string(i) + "/a.txt"),
                   temp.native("d" + std::to_string(i) + "/B.txt"));
    for (int i = count - 1; i >= 0; --i)
        EXPECT_EQ(files.firstMatch("T:\\d" + std::to_string(i) + "\\*.TXT"), "B.txt") << i;
}

// What a restore finds among them is tried through the restore run.
TEST_F(PosixFiles, LinksAndNodesAreNeitherListedNorDeletedThroughAndACopyReplacesALink) {
    temp.write("Thuis/.ssh/id_rsa", "geheim");
    const fs::path at = temp.native("Stick/B/NV.ini");
    const std::tuple<const char*, std::string, mode_t> oddities[] = {
        {"link to a file outside", temp.native("Thuis/.ssh/id_rsa").string(), 0},
        {"relative link up and out", "../../Thuis/.ssh/id_rsa", 0},
        {"link to a file in the same folder", "NV_Ledger01.mdb", 0},
        {"dangling link", "weg.ini", 0},
        {"FIFO", "", S_IFIFO | 0644},
        {"character device", "", S_IFCHR | 0666},
    };
    for (const auto& [name, link, node] : oddities) {
        SCOPED_TRACE(name);
        temp.write("Stick/B/NV_Ledger01.mdb", "echte backup");
        if (!link.empty())
            fs::create_symlink(link, at);
        else if (::mknod(at.c_str(), node, makedev(1, 3)) != 0)
            continue; // without the rights
        EXPECT_EQ(files.listFiles("T:\\Stick\\B", "*.*"),
                  std::vector<std::string>{"NV_Ledger01.mdb"});
        // Deleting the folder's files leaves the entry and what it leads to alone.
        files.deleteByPattern("T:\\Stick\\B\\*.*");
        EXPECT_TRUE(fs::exists(fs::symlink_status(at)));
        EXPECT_FALSE(temp.exists("Stick/B/NV_Ledger01.mdb"));
        EXPECT_EQ(temp.read("Thuis/.ssh/id_rsa"), "geheim");
        fs::remove(at);
    }
    // A copy onto a link replaces the link; what it leads to stays as it was.
    temp.write("Stick/B/NV_Ledger01.mdb", "echte backup");
    fs::create_symlink(temp.native("Thuis/.ssh/id_rsa"), at);
    files.copyFile("T:\\Stick\\B\\NV_Ledger01.mdb", "T:\\Stick\\B\\NV.ini");
    EXPECT_FALSE(fs::is_symlink(at));
    EXPECT_EQ(temp.read("Stick/B/NV.ini"), "echte backup");
    EXPECT_EQ(temp.read("Thuis/.ssh/id_rsa"), "geheim");
}

} // namespace
