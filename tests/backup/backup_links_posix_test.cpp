// A backup onto a stick whose dated folder or mirrored subfolder was made a link to elsewhere.
#include "backup/BackupRunFixture.h"

using namespace nv;
using namespace nvtest;
namespace fs = std::filesystem;

namespace {

using LinkedTarget = BackupRunFixture;

TEST_F(LinkedTarget, NoFileOfTheRunLandsWhereALinkOnTheStickLeads) {
    struct Case {
        const char* name;
        int directory;          // the layout: 1 mirrored, 0 flat
        std::string link;       // on the stick
        std::string leadsTo;    // as the link says it
        std::string victimFile; // below the temporary folder, what must stay as it is
    };
    const Case cases[] = {
        {"dated folder to the home folder", 0, kToday, machine.temp.native("Thuis").string(),
         "Thuis/NV.ini"},
        {"mirrored subfolder to another company's", 1, kToday + "/Norvale", "../Ander/Norvale",
         "stick/Ander/Norvale/NV.ini"},
    };
    list({source("Norvale/NV.ini", "ons NV.ini"), source("Norvale/stockA.NVD", "onze voorraad")});
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        machine.temp.write(c.victimFile, "van een ander");
        // The leftover sweep of the run's folders must not reach through the link either.
        machine.temp.leaveCopyLeftover(c.victimFile);
        fs::create_directories(stick.native(c.link).parent_path());
        fs::create_directory_symlink(c.leadsTo, stick.native(c.link));
        nv::AppSettings.Directory = static_cast<uint8_t>(c.directory);
        boxes.shown.clear();
        run();

        EXPECT_EQ(machine.temp.read(c.victimFile), "van een ander");
        const fs::path victimFolder = machine.temp.native(c.victimFile).parent_path();
        std::vector<std::string> there;
        for (const auto& entry : fs::directory_iterator(victimFolder))
            if (entry.path().filename().string()[0] != '.')
                there.push_back(entry.path().filename().string());
        EXPECT_EQ(there, std::vector<std::string>{"NV.ini"});
        EXPECT_EQ(
            machine.temp.copyLeftovers(fs::relative(victimFolder, machine.temp.native()).string()),
            1u);
        ASSERT_FALSE(boxes.shown.empty());
        EXPECT_NE(boxes.shown.back().title, "Back Up");
        EXPECT_TRUE(fs::is_symlink(stick.native(c.link)));
        fs::remove_all(stick.native(kToday));
    }
}

} // namespace
