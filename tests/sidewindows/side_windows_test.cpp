#include "support/FakeControls.h"
#include "support/TestMachine.h"

#include <gtest/gtest.h>

using namespace nv;

namespace {

TEST(Splash, ShowsItsCopyrightAndGoesOnACharacterKeyOrAClick) {
    nvtest::TestMachine machine;
    const std::function<void(nvtest::FakeSplashWindow&)> closers[] = {
        [](auto& w) { w.Me.KeyPress(); }, [](auto& w) { EXPECT_TRUE(w.Frame1.click()); }};
    for (const auto& close : closers) {
        nvtest::FakeSplashWindow splash;
        splash.form().Form_Load();
        EXPECT_EQ(splash.lblCopyright.caption(), "Tessaly \u00a9 2004-2026");
        close(splash);
        EXPECT_TRUE(splash.Me.closed);
    }
}

TEST(About, ShowsItsTextsAndTheMailLinkGoesThroughAThrowAwayShortcut) {
    nvtest::TestMachine machine;
    machine.process.path = machine.temp.drive("Program");
    machine.temp.write("Program/keep.txt", "x");
    nvtest::FakeAboutWindow about;
    about.form().Form_Load();
    EXPECT_EQ(about.lblDisclaimer.caption(), kCopyrightLine);

    for (int click = 0; click < 2; ++click)
        EXPECT_TRUE(about.LblMail.click());
    EXPECT_EQ(about.LblMail.foreColor, (Rgb{192, 0, 0}));
    const std::string link = machine.temp.drive("Program\\temp.url");
    EXPECT_EQ(machine.shell.opened, std::vector({link, link}));
    EXPECT_EQ(machine.shell.contents[1],
              "[internetShortcut]\r\nurl =mailto:" + std::string(kSupportAddress) + "\r\n");
    EXPECT_FALSE(std::filesystem::exists(machine.temp.native("Program/temp.url")));

    EXPECT_TRUE(about.cmdOK.click());
    EXPECT_TRUE(about.Me.closed);
}

} // namespace
