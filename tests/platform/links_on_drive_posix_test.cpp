// What a prepared drive can hold besides files and folders: links to elsewhere, FIFOs and device
// nodes. None of them is followed, read or written through by a file operation.
#include "platform/FileSystem.h"
#include "support/ProgramFolder.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

using Names = std::vector<std::string>;

// A stick E: with a backup folder whose entries lead out of it, and the user's own files beside
// the stick that they lead to.
class PreparedStick : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("Thuis/Documenten/brief.txt", "van de gebruiker");
        machine.temp.write("Thuis/.ssh/id_rsa", "geheim");
        machine.temp.write("Stick/Backup2026-11-17/NV_Ledger01.mdb", "echte backup");
        fs::create_directories(machine.temp.native("Stick/Andere"));
    }
    fs::path stick(const std::string& relative) const {
        return machine.temp.native("Stick/" + relative);
    }
    std::string home(const std::string& relative) const {
        return machine.temp.read("Thuis/" + relative);
    }
    Names homeFiles() const {
        Names names;
        for (const auto& entry : fs::recursive_directory_iterator(machine.temp.native("Thuis")))
            if (entry.is_regular_file())
                names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive drive{'E', machine.temp.native("Stick")};
    FileSystem& files = *machine.platform.files;
};

TEST_F(PreparedStick, AnEntryThatIsNoPlainFileIsNotFoundAndNeverRead) {
    // A link, or else a node of that type.
    const struct {
        const char* name;
        std::string link;
        mode_t node;
    } oddities[] = {
        {"link to a file outside", machine.temp.native("Thuis/.ssh/id_rsa").string(), 0},
        {"relative link up and out", "../../Thuis/.ssh/id_rsa", 0},
        {"link to a file in the same folder", "NV_Ledger01.mdb", 0},
        {"dangling link", "weg.ini", 0},
        {"FIFO", "", S_IFIFO | 0644},
        {"character device", "", S_IFCHR | 0666},
    };
    for (const auto& oddity : oddities) {
        SCOPED_TRACE(oddity.name);
        const fs::path at = stick("Backup2026-11-17/NV.ini");
        if (!oddity.link.empty())
            fs::create_symlink(oddity.link, at);
        else if (::mknod(at.c_str(), oddity.node, makedev(1, 3)) != 0) {
            std::cout << "skipped without the rights: " << oddity.name << "\n";
            continue;
        }
        // What a restore finds and copies from it is tried through the restore run.
        EXPECT_EQ(files.firstMatch("E:\\Backup2026-11-17\\*.ini"), "");
        EXPECT_EQ(files.listFiles("E:\\Backup2026-11-17", "*.*"), Names{"NV_Ledger01.mdb"});
        // Deleting the folder's files leaves it and what it leads to alone.
        files.deleteByPattern("E:\\Backup2026-11-17\\*.*");
        EXPECT_TRUE(fs::exists(fs::symlink_status(at)));
        EXPECT_FALSE(fs::exists(stick("Backup2026-11-17/NV_Ledger01.mdb")));
        fs::remove(at);
        machine.temp.write("Stick/Backup2026-11-17/NV_Ledger01.mdb", "echte backup");
        EXPECT_EQ(homeFiles(), (Names{"brief.txt", "id_rsa"}));
        EXPECT_EQ(home(".ssh/id_rsa"), "geheim");
    }
}

// A copy onto a link replaces the link; what it leads to stays as it was. (Writing and deleting
// at a link are tried through the mail link's throw-away shortcut.)
TEST_F(PreparedStick, ACopyOntoALinkReplacesItAndLeavesItsTargetAlone) {
    fs::create_symlink(machine.temp.native("Thuis/.ssh/id_rsa"), stick("Andere/NV.ini"));
    files.copyFile("E:\\Backup2026-11-17\\NV_Ledger01.mdb", "E:\\Andere\\NV.ini");
    EXPECT_FALSE(fs::is_symlink(stick("Andere/NV.ini")));
    EXPECT_EQ(machine.temp.read("Stick/Andere/NV.ini"), "echte backup");
    EXPECT_EQ(home(".ssh/id_rsa"), "geheim");
}

} // namespace
