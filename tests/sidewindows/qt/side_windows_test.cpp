#include "sidewindows/qt/FrmAbout.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTest>
#include <QTimer>
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
    EXPECT_EQ(about.lblDescription->text(),
              "Eenvoudig progamma om de Norvale bestanden systematisch te kopieren naar een "
              "back-up medium zoals een ZIP drive\r\n\r\nToevoegen van andere belangrijke files is "
              "mogelijk, let wel op de maximale capaciteit van het backup medium, het programma "
              "regelt geen backup over meerdere diskettes");
    EXPECT_EQ(about.TxtInfo->text(), "Voor vragen, mail naar:");
    EXPECT_EQ(about.lblDisclaimer->text(), QString::fromUtf8(kCopyrightLine));
    EXPECT_EQ(about.LblMail->colour(), QColor(0, 0, 192));

    QTest::mouseClick(about.LblMail, Qt::LeftButton);
    EXPECT_EQ(about.LblMail->colour(), QColor(192, 0, 0));
    EXPECT_FALSE(machine.temp.exists("Program/temp.url"));
    EXPECT_EQ(machine.shell.opened, std::vector{machine.temp.drive("Program\\temp.url")});
    EXPECT_EQ(machine.shell.contents, std::vector{"[internetShortcut]\r\nurl =mailto:" +
                                                  std::string(kSupportAddress) + "\r\n"});
}

} // namespace
