#include "sidewindows/qt/FrmAbout.h"
#include "sidewindows/qt/FrmSplash.h"
#include "startup/AppSettings.h"
#include "support/TestMachine.h"

#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

using namespace nv;

namespace {

class SplashTest : public ::testing::Test {
protected:
    SplashTest() {
        splash = new FrmSplash;
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
    QPointer<FrmSplash> splash;
};

TEST_F(SplashTest, ShowsTitleVersionAndCopyright) {
    EXPECT_EQ(splash->lblProductName->text(), "Norvale Backup");
    EXPECT_EQ(splash->lblVersion->text(), "Version 1.7.1");
    EXPECT_TRUE(splash->lblCopyright->text().contains(QChar(0x00a9)));
    // Labels sized to their text stay inside the frame.
    for (QLabel* label : {splash->lblProductName, splash->lblVersion, splash->lblCopyright})
        EXPECT_TRUE(splash->Frame1->rect().contains(label->geometry()))
            << label->objectName().toStdString();
    EXPECT_FALSE(splash->Image2->pixmap().isNull());
    EXPECT_FALSE(splash->Image1->pixmap().isNull());
}

TEST_F(SplashTest, TheTimerClosesOnlyAfterTwoSecondsFromTheLoad) {
    EXPECT_EQ(splash->Timer1->interval(), 500);
    EXPECT_TRUE(splash->Timer1->isActive());
    machine.clock.timeOfDay += 2000;
    splash->Timer1_Timer();
    EXPECT_FALSE(closed());
    machine.clock.timeOfDay += 1;
    splash->Timer1_Timer();
    EXPECT_TRUE(closed());
}

TEST_F(SplashTest, AClockPutBackDelaysTheClosing) {
    machine.clock.timeOfDay -= 60'000;
    machine.clock.timeOfDay += 2500;
    splash->Timer1_Timer();
    EXPECT_FALSE(closed());
}

TEST_F(SplashTest, ArrowAndFunctionKeysCloseNothingACharacterKeyCloses) {
    QTest::keyClick(splash, Qt::Key_Left);
    QTest::keyClick(splash, Qt::Key_F5);
    QTest::keyClick(splash, Qt::Key_Shift);
    EXPECT_FALSE(closed());
    QTest::keyClick(splash, Qt::Key_A);
    EXPECT_TRUE(closed());
}

TEST_F(SplashTest, AClickOnAPictureClosesNothingAClickOnTheFrameCloses) {
    QTest::mouseClick(splash->Image2, Qt::LeftButton);
    QTest::mouseClick(splash->lblProductName, Qt::LeftButton);
    EXPECT_FALSE(closed());
    // Between the copyright line and the square picture lies bare frame.
    QPoint bare(splash->Image1->x() / 2, splash->Image1->y() - 4);
    ASSERT_EQ(splash->Frame1->childAt(bare), nullptr);
    QTest::mouseClick(splash->Frame1, Qt::LeftButton, {}, bare);
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

    const std::string shortcut =
        std::string("[internetShortcut]\r\nurl =mailto:") + kSupportAddress + "\r\n";
    for (int click = 0; click < 2; ++click) {
        QTest::mouseClick(about.LblMail, Qt::LeftButton);
        EXPECT_EQ(about.LblMail->colour(), QColor(192, 0, 0));
        EXPECT_FALSE(machine.temp.exists("Program/temp.url"));
    }
    ASSERT_EQ(machine.shell.contents.size(), 2u);
    EXPECT_EQ(machine.shell.contents[1], shortcut);
    EXPECT_EQ(machine.shell.opened[1], machine.temp.drive("Program\\temp.url"));
}

TEST(About, OkEnterAndEscapeCloseTheWindow) {
    nvtest::TestMachine machine;
    for (int key : {0, int(Qt::Key_Return), int(Qt::Key_Escape)}) {
        FrmAbout about;
        about.Form_Load();
        QTimer::singleShot(0, &about, [&] {
            if (key == 0)
                QTest::mouseClick(about.cmdOK, Qt::LeftButton);
            else
                QTest::keyClick(&about, static_cast<Qt::Key>(key));
        });
        QTimer::singleShot(3000, &about, [&] { about.done(99); });
        EXPECT_NE(about.exec(), 99) << key;
    }
}

} // namespace
