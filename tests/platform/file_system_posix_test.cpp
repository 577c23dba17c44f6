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
// times alone could not tell it.
TEST_F(PosixFiles, OtherWritersChangesShowAtOnce) {
    temp.write("Data/NV.ini", "x");
    EXPECT_EQ(files.firstMatch("T:\\data\\nieuw.txt"), "");
    EXPECT_EQ(files.firstMatch("T:\\DATA\\nv.INI"), "NV.ini");
    temp.write("Data/Nieuw.txt", "x");
    EXPECT_EQ(files.firstMatch("T:\\data\\NIEUW.TXT"), "Nieuw.txt");
    fs::rename(temp.native("Data/Nieuw.txt"), temp.native("Data/NIEUW.txt"));
    EXPECT_EQ(files.firstMatch("T:\\data\\nieuw.txt"), "NIEUW.txt");
    fs::remove(temp.native("Data/NIEUW.txt"));
    EXPECT_EQ(files.firstMatch("T:\\data\\nieuw.txt"), "");
    // A folder in other letters, made after its parent was read.
    fs::rename(temp.native("Data"), temp.native("DATA2"));
    EXPECT_EQ(files.firstMatch("T:\\data2\\nv.ini"), "NV.ini");
    // A folder whose parent moves hears nothing of it, and another takes its place.
    temp.write("a/data/x.txt", "oud");
    EXPECT_EQ(files.firstMatch("T:\\a\\data\\X.TXT"), "x.txt");
    fs::rename(temp.native("a"), temp.native("a.oud"));
    temp.write("a/data/Y.txt", "nieuw");
    EXPECT_EQ(files.firstMatch("T:\\a\\data\\X.TXT"), "");
    EXPECT_EQ(files.firstMatch("T:\\a\\data\\y.txt"), "Y.txt");
}

TEST_F(PosixFiles, TheProgramsOwnCopiesMovesAndDeletesKeepTheNamesRight) {
    temp.write("bron.dat", "inhoud");
    files.makeFolder("T:\\Backup");
    for (int i = 0; i < 20; ++i)
        files.copyFile("T:\\bron.dat", "T:\\Backup\\f" + std::to_string(i) + ".dat");
    // A copy of a batch, staged first and flushed with the others before it takes its name.
    auto staged = files.stageCopy("T:\\bron.dat", "T:\\backup\\F20.DAT");
    ASSERT_TRUE(staged);
    files.flushStaged({*staged});
    files.placeStaged(*staged);
    EXPECT_EQ(files.firstMatch("T:\\BACKUP\\F7.DAT"), "f7.dat");
    EXPECT_EQ(files.firstMatch("T:\\backup\\f20.dat"), "F20.DAT");
    // A copy onto a name in other letters replaces that file instead of adding a second one.
    temp.write("bron.dat", "nieuw");
    files.copyFile("T:\\bron.dat", "T:\\backup\\F3.DAT");
    EXPECT_EQ(temp.read("Backup/f3.dat"), "nieuw");
    files.moveFile("T:\\backup\\F1.DAT", "T:\\backup\\g1.dat");
    EXPECT_EQ(files.firstMatch("T:\\backup\\F1.DAT"), "");
    EXPECT_EQ(files.firstMatch("T:\\backup\\G1.DAT"), "g1.dat");
    files.deleteFile("T:\\BACKUP\\F2.DAT");
    EXPECT_EQ(files.firstMatch("T:\\backup\\f2.dat"), "");
    // 21 made, one deleted: the copy onto F3.DAT added none.
    EXPECT_EQ(files.listFiles("T:\\backup", "*.*").size(), 20u);
}

TEST_F(PosixFiles, MoreFoldersThanTheIndexHoldsStayRight) {
    const int count = static_cast<int>(FolderIndex::kMaxFolders) + 8;
    auto folder = [](int i) { return "d" + std::to_string(i); };
    for (int i = 0; i < count; ++i) {
        temp.write(folder(i) + "/a.txt", "x");
        EXPECT_EQ(files.firstMatch("T:\\" + folder(i) + "\\A.TXT"), "a.txt");
    }
    for (int i = 0; i < count; ++i)
        fs::rename(temp.native(folder(i) + "/a.txt"), temp.native(folder(i) + "/B.txt"));
    for (int i = count - 1; i >= 0; --i) {
        EXPECT_EQ(files.firstMatch("T:\\" + folder(i) + "\\A.TXT"), "") << i;
        EXPECT_EQ(files.firstMatch("T:\\" + folder(i) + "\\b.txt"), "B.txt") << i;
    }
}

// The copy runs on a worker thread while the window's thread may ask the same file system.
TEST_F(PosixFiles, ACopyThreadAndALookingThreadShareTheIndex) {
    temp.write("bron.dat", "x");
    temp.write("doel/Vast.txt", "x");
    std::thread copier([&] {
        for (int i = 0; i < 60; ++i)
            files.copyFile("T:\\bron.dat", "T:\\doel\\n" + std::to_string(i) + ".dat");
    });
    int wrong = 0;
    for (int i = 0; i < 300; ++i)
        wrong += files.firstMatch("T:\\DOEL\\vast.TXT") != "Vast.txt";
    copier.join();
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(files.listFiles("T:\\doel", "*.dat").size(), 60u);
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
