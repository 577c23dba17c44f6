// What a prepared drive can hold besides files and folders: links to elsewhere, FIFOs and device
// nodes. None of them is listed, followed, read or written through by a file operation; what a
// restore finds among them is tried through the restore run.
#include "platform/FileSystem.h"
#include "support/ProgramFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace fs = std::filesystem;

namespace {

TEST(LinksOnADrive, AreNeitherListedNorDeletedThroughAndACopyReplacesALink) {
    nvtest::TestMachine machine;
    const nvtest::TempFolder& t = machine.temp;
    nvtest::FolderDrive drive{'E', t.native("Stick")};
    nv::FileSystem& files = *machine.platform.files;
    t.write("Thuis/.ssh/id_rsa", "geheim");
    const fs::path at = t.native("Stick/B/NV.ini");
    // A link, or else a node of that type.
    const struct {
        const char* name;
        std::string link;
        mode_t node;
    } oddities[] = {
        {"link to a file outside", t.native("Thuis/.ssh/id_rsa").string(), 0},
        {"relative link up and out", "../../Thuis/.ssh/id_rsa", 0},
        {"link to a file in the same folder", "NV_Ledger01.mdb", 0},
        {"dangling link", "weg.ini", 0},
        {"FIFO", "", S_IFIFO | 0644},
        {"character device", "", S_IFCHR | 0666},
    };
    for (const auto& oddity : oddities) {
        SCOPED_TRACE(oddity.name);
        t.write("Stick/B/NV_Ledger01.mdb", "echte backup");
        if (!oddity.link.empty())
            fs::create_symlink(oddity.link, at);
        else if (::mknod(at.c_str(), oddity.node, makedev(1, 3)) != 0)
            continue; // without the rights
        EXPECT_EQ(files.listFiles("E:\\B", "*.*"), std::vector<std::string>{"NV_Ledger01.mdb"});
        // Deleting the folder's files leaves the entry and what it leads to alone.
        files.deleteByPattern("E:\\B\\*.*");
        EXPECT_TRUE(fs::exists(fs::symlink_status(at)));
        EXPECT_FALSE(t.exists("Stick/B/NV_Ledger01.mdb"));
        EXPECT_EQ(t.read("Thuis/.ssh/id_rsa"), "geheim");
        fs::remove(at);
    }
    // A copy onto a link replaces the link; what it leads to stays as it was.
    t.write("Stick/B/NV_Ledger01.mdb", "echte backup");
    fs::create_symlink(t.native("Thuis/.ssh/id_rsa"), at);
    files.copyFile("E:\\B\\NV_Ledger01.mdb", "E:\\B\\NV.ini");
    EXPECT_FALSE(fs::is_symlink(at));
    EXPECT_EQ(t.read("Stick/B/NV.ini"), "echte backup");
    EXPECT_EQ(t.read("Thuis/.ssh/id_rsa"), "geheim");
}

} // namespace
