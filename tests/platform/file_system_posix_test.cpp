// The Linux file system behind the drive letters: names looked up in other letters through its
// index of folders, which must answer as a fresh listing would whoever changed the folder.
#include "platform/posix/DriveTable.h"
#include "platform/posix/PosixFileSystem.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>
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
    // A copy onto a name in other letters replaces that file instead of adding a second one.
    temp.write("bron.dat", "nieuw");
    files.copyFile("T:\\bron.dat", "T:\\backup\\F3.DAT");
    EXPECT_EQ(temp.read("Backup/f3.dat"), "nieuw");
    EXPECT_EQ(files.firstMatch("T:\\BACKUP\\F7.DAT"), "f7.dat");
    // 60 copies and Vast.txt: the copy onto F3.DAT added none.
    EXPECT_EQ(files.listFiles("T:\\backup", "*.*").size(), 61u);
}

// What the runs find through links and FIFOs on a stick is tried through them; here a copy
// onto a link replaces the link, and what it leads to stays as it was.
TEST_F(PosixFiles, ACopyOntoALinkReplacesTheLink) {
    temp.write("Thuis/.ssh/id_rsa", "geheim");
    const fs::path at = temp.native("Stick/B/NV.ini");
    temp.write("Stick/B/NV_Ledger01.mdb", "echte backup");
    fs::create_symlink(temp.native("Thuis/.ssh/id_rsa"), at);
    files.copyFile("T:\\Stick\\B\\NV_Ledger01.mdb", "T:\\Stick\\B\\NV.ini");
    EXPECT_FALSE(fs::is_symlink(at));
    EXPECT_EQ(temp.read("Stick/B/NV.ini"), "echte backup");
    EXPECT_EQ(temp.read("Thuis/.ssh/id_rsa"), "geheim");
}

} // namespace
