#include "sidewindows/qt/FrmAbout.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"
#include "support/qt/SpokenNames.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWindow>
#include <gtest/gtest.h>

using namespace nv;

namespace {

class SplashTest : public ::testing::Test {
protected:
    SplashTest() {
        splash->Form_Load();
        splash->show();
    }
    ~SplashTest() override { delete splash.data(); }

    // Closing deletes the window once the event loop has had its turn.
    bool closed() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return splash.isNull();
    }

    nvtest::TestMachine machine;
    QPointer<FrmSplash> splash = new FrmSplash;
};

TEST_F(SplashTest, ShowsItsTextsInsideTheFrameAndOnlyACharacterKeyClosesIt) {
    EXPECT_EQ(splash->lblProductName->text(), "Norvale Backup");
    EXPECT_EQ(splash->lblVersion->text(), "Version 1.7.1");
    EXPECT_TRUE(splash->lblCopyright->text().contains(QChar(0x00a9)));
    for (QLabel* label : {splash->lblProductName, splash->lblVersion, splash->lblCopyright})
        EXPECT_TRUE(splash->Frame1->rect().contains(label->geometry()))
            << label->objectName().toStdString();
    EXPECT_FALSE(splash->Image2->pixmap().isNull());
    EXPECT_FALSE(splash->Image1->pixmap().isNull());
    // What the platform is asked for: no caption bar at all, and no place in the task bar.
    EXPECT_TRUE(splash->windowFlags() & Qt::FramelessWindowHint);
    EXPECT_EQ(splash->windowType(), Qt::Tool);
    EXPECT_EQ(nvtest::namesNotFittingWhatTheyShow(*splash), std::vector<std::string>{});

    for (Qt::Key key : {Qt::Key_Left, Qt::Key_F5, Qt::Key_Shift})
        QTest::keyClick(splash, key);
    EXPECT_FALSE(closed());
    QTest::keyClick(splash, Qt::Key_A);
    EXPECT_TRUE(closed());
}

TEST_F(SplashTest, TheTimerClosesOnlyAfterTwoSecondsFromTheLoadEvenWithTheClockPutBack) {
    EXPECT_TRUE(splash->Timer1->isActive());
    // A clock put back a minute delays the closing.
    machine.clock.timeOfDay -= 57'500;
    splash->Timer1_Timer();
    EXPECT_FALSE(closed());
    machine.clock.timeOfDay += 57'500 + 2000;
    splash->Timer1_Timer();
    EXPECT_FALSE(closed());
    machine.clock.timeOfDay += 1;
    splash->Timer1_Timer();
    EXPECT_TRUE(closed());
}

TEST(About, ShowsItsTextsAndTheMailLinkGoesThroughAThrowAwayShortcut) {
    nvtest::TestMachine machine;
    machine.process.path = machine.temp.drive("Program");
    machine.temp.write("Program/keep.txt", "x");
    FrmAbout about;
    about.Form_Load();
    EXPECT_EQ(about.windowTitle(), "Tessaly Backup Tool");
    EXPECT_EQ(about.lblTitle->text(), "Norvale Backup Tool");
    EXPECT_EQ(about.lblVersion->text(), "Versie 1.7.1");
    EXPECT_EQ(about.TxtInfo->text(), "Voor vragen, mail naar:");
    EXPECT_EQ(about.LblMail->colour(), QColor(0, 0, 192));
    // The flags the platform builds its window hints from, as the window is shown: a caption
    // with a close button, and no minimise or maximise button added by the platform's defaults.
    about.show();
    const Qt::WindowFlags flags = about.windowHandle()->flags();
    EXPECT_TRUE(flags & Qt::WindowTitleHint);
    EXPECT_TRUE(flags & Qt::WindowCloseButtonHint);
    EXPECT_FALSE(flags & (Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    EXPECT_EQ(nvtest::namesNotFittingWhatTheyShow(about), std::vector<std::string>{});
    about.hide();

    QTest::mouseClick(about.LblMail, Qt::LeftButton);
    EXPECT_EQ(about.LblMail->colour(), QColor(192, 0, 0));
    EXPECT_EQ(machine.shell.opened, std::vector{machine.temp.drive("Program\\temp.url")});
    EXPECT_EQ(machine.shell.contents, std::vector{"[internetShortcut]\r\nurl =mailto:" +
                                                  std::string(kSupportAddress) + "\r\n"});
}

} // namespace
