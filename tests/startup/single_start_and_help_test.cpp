#include "startup/AppSettings.h"
#include "startup/OpenHelp.h"
#include "startup/SingleStart.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using namespace nv;

namespace {

struct Start : SingleStart {
    bool first() const override { return isFirst; }
    bool askFirstToComeForward() override { return ++asked, true; }
    bool isFirst = true;
    int asked = 0;
};

TEST(SingleStart, ASecondStartSaysSoAsksTheFirstForwardAndEnds) {
    nvtest::TestMachine machine;
    Start start;
    EXPECT_TRUE(goOnAsOnlyStart(start));
    start.isFirst = false;
    EXPECT_FALSE(goOnAsOnlyStart(start));
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].text, "Norvale Backup is al geopend.\r\n\r\nU kunt verder "
                                           "werken in het venster dat al openstaat.");
    EXPECT_EQ(start.asked, 1);
}

struct Viewer : HelpViewer {
    bool show(const std::string& nativePath) override {
        shown.push_back(nativePath);
        return true;
    }
    std::vector<std::string> shown;
};

TEST(Help, F1OpensTheHelpFileOrSaysItIsMissing) {
    nvtest::TestMachine machine;
    App.HelpFile = machine.temp.drive("NV BU tool.chm");
    Viewer viewer;
    subOpenHelp(viewer);
    machine.temp.write("NV BU tool.chm", "ITSF");
    subOpenHelp(viewer);
    ASSERT_EQ(machine.boxes.shown.size(), 1u);
    EXPECT_EQ(machine.boxes.shown[0].text,
              "Het helpbestand '" + App.HelpFile + "' kan niet gevonden worden.");
    EXPECT_EQ(viewer.shown, std::vector{machine.temp.native("NV BU tool.chm").string()});
}

} // namespace
