#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/StartWindows.h"
#include "mainwindow/qt/TargetLists.h"
#include "production/KnownFile.h"
#include "startup/Settings.h"
#include "support/ProgramFolder.h"
#include "support/qt/SpokenNames.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <optional>

using namespace nv;

namespace {

// Relative luminance of a colour as the contrast rules for text define it.
double luminance(QRgb rgb) {
    auto channel = [](int value) {
        double c = value / 255.0;
        return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(qRed(rgb)) + 0.7152 * channel(qGreen(rgb)) +
           0.0722 * channel(qBlue(rgb));
}

double contrast(QRgb a, QRgb b) {
    double la = luminance(a), lb = luminance(b);
    return (std::max(la, lb) + 0.05) / (std::min(la, lb) + 0.05);
}

// What a button shows: the face beside its caption, and the caption's colour that stands out
// most from it, searched away from the border.
struct Look {
    QRgb face, caption = 0;
};

Look lookOf(QWidget* button) {
    const QImage image = button->grab().toImage();
    Look look{image.pixel(4, image.height() / 2)};
    double best = 0;
    for (int y = 4; y < image.height() - 4; ++y)
        for (int x = 4; x < image.width() - 4; ++x)
            if (double c = contrast(image.pixel(x, y), look.face); c > best)
                best = c, look.caption = image.pixel(x, y);
    return look;
}

// A production folder with a list of three rows, and a stick E: holding one loose file.
class FrmMainTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("Stick/notes.txt", "x");
        nvtest::useProgramFolder(machine, "E:", {"NV.ini", "stockA.NVD", "C:\\Docs\\a.doc"});
    }

    // Whether each backup control is on, in the order subButtons sets them.
    std::string buttonState(const FrmMain& w) {
        std::string state;
        for (bool on :
             {w.Cmd_Backup->isEnabled(), w.CmdDeleteDir->isEnabled(), w.CmdSelectFiles->isEnabled(),
              w.CmdVerwijder->isEnabled(), !w.CmdVervers->isHidden(), w.moBackUp->isEnabled(),
              w.moRestore->isEnabled(), !w.CmdRestore->isHidden()})
            state += on ? '1' : '0';
        return state;
    }
    // Each tick with the drive away steps the dots on the label's text.
    void tickDots(FrmMain& window, const QString& text, std::initializer_list<const char*> tails) {
        for (const char* tail : tails) {
            EXPECT_EQ(window.LblStation->text(), text + tail);
            window.Timer1_Timer();
        }
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
};

TEST_F(FrmMainTest, FormLoadFillsTheWindowAndOpensTheTargetDrive) {
    FrmMain window;
    window.Form_Load();

    EXPECT_EQ(window.windowTitle(), "Norvale Backup & Restore ");
    ASSERT_EQ(window.LstSelectedFiles->count(), 3);
    EXPECT_EQ(window.LstSelectedFiles->item(2)->text(), "C:\\Docs\\a.doc");
    // The assignment of E: moved the selection, so the drive change did its whole work.
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
    EXPECT_EQ(window.Lbl_InhoudDir->text(), "Bestanden in de map E:\\");
    ASSERT_EQ(window.TargetFileLst->count(), 1);
    EXPECT_EQ(window.TargetFileLst->item(0)->text(), "notes.txt");
    EXPECT_EQ(buttonState(window), "11110111");
    EXPECT_TRUE(window.CmdDeleteDir->isHidden());
    EXPECT_EQ(fReadIni(AppSettings.strIniFile, kSectionBasic, "DriveTarget", "?"), "E:");

    // The window snaps back to its minimum height, and grows freely.
    window.show();
    EXPECT_NEAR(window.heightTwips(), 9000, 15);
    window.resize(window.width(), window.height() / 2);
    EXPECT_NEAR(window.heightTwips(), 9000, 15);
    window.resize(window.width() - 100, window.height() + 150);
    EXPECT_GT(window.heightTwips(), 9000);
}

// Back Up is green as drawn, red 0, green 192, blue 0, with a caption that reads at 4.5 to 1 or
// better; off, as during the wizard, it pales and greys and still reads.
TEST_F(FrmMainTest, BackUpIsGreenAndItsCaptionReadsWhetherOnOrOff) {
    FrmMain window;
    window.Form_Load();
    window.show();
    const Look on = lookOf(window.Cmd_Backup);
    EXPECT_EQ(QColor(on.face), QColor(0, 192, 0));
    EXPECT_GE(contrast(on.caption, on.face), 4.5);

    window.CmdRestore_Click();
    ASSERT_FALSE(window.Cmd_Backup->isEnabled());
    const Look off = lookOf(window.Cmd_Backup);
    EXPECT_GE(contrast(off.caption, off.face), 4.5);
    // Paler and greyer than when on: less saturated face, lighter caption.
    EXPECT_LT(QColor(off.face).hsvSaturation(), QColor(on.face).hsvSaturation() / 2);
    EXPECT_GT(luminance(off.caption), luminance(on.caption));
}

// A screen reader speaks each control by what it shows: with the drive there the red drive
// label is empty and says nothing, rather than the frame's title; with it gone, its message.
TEST_F(FrmMainTest, EveryControlIsSpokenByWhatItShows) {
    for (const char* drive : {"E:", "Q:"}) {
        SCOPED_TRACE(drive);
        AppSettings.DriveTarget = drive;
        FrmMain window;
        window.Form_Load();
        window.show();
        EXPECT_EQ(window.LblStation->text().isEmpty(), std::string(drive) == "E:");
        EXPECT_EQ(nvtest::namesNotFittingWhatTheyShow(window), std::vector<std::string>{});
        window.CmdRestore_Click();
        EXPECT_EQ(nvtest::namesNotFittingWhatTheyShow(window), std::vector<std::string>{});
    }
}

// A target drive absent at start, or none at all (DriveTarget= in a hand-edited file): no box,
// the backup controls go off while the menu's other entries stay, and the watch runs until the
// drive comes or another is picked.
TEST_F(FrmMainTest, AnAbsentOrEmptyTargetDriveIsWatchedUntilADriveIsThere) {
    for (const std::string drive : {"Q:", ""}) {
        SCOPED_TRACE(drive);
        AppSettings.DriveTarget = drive;
        FrmMain window;
        window.Form_Load();
        EXPECT_TRUE(machine.boxes.shown.empty());
        EXPECT_TRUE(window.blnDriveLost && window.Timer1->isActive());
        EXPECT_EQ(buttonState(window), "00001000");
        EXPECT_TRUE(window.MoVoegToe->isEnabled() && window.MoAfsluiten->isEnabled());
        tickDots(window,
                 QString::fromStdString("Het doelstation " + drive +
                                        " is niet aangesloten. Sluit deze aan of selecteer een "
                                        "ander station hierboven\r\n"),
                 {"", " .", " . .", " . . .", ""});

        std::optional<nvtest::FolderDrive> q;
        if (drive.empty()) {
            window.TargetDrive->setDrive("E:");
            EXPECT_EQ(fReadIni(AppSettings.strIniFile, kSectionBasic, "DriveTarget", "?"), "E:");
        } else {
            q.emplace('Q', machine.temp.native("Stick"));
            window.Timer1_Timer();
            EXPECT_FALSE(window.blnDriveLost);
            EXPECT_EQ(window.TargetDirectories->path(), "Q:\\");
        }
        EXPECT_EQ(window.LblStation->text(), "");
        EXPECT_EQ(buttonState(window), "11110111");
    }
}

TEST_F(FrmMainTest, ClosingTheMainWindowEndsTheProgramOnlyAfterTheSplash) {
    for (int row : {0, 1, 2, 3, 5, 6, 7, 10})
        machine.temp.write("Norvale/" + fKnownFileName(row), "data");
    machine.process.path = machine.temp.drive("Norvale");
    QtStartWindows windows;
    ASSERT_EQ(Main(windows), MainOutcome::Running);
    ASSERT_TRUE(windows.mainWindow() && windows.splash());

    // The timers die with the test, whatever becomes of the event loop.
    QObject scope;
    QTimer::singleShot(0, &scope, [&] { windows.mainWindow()->MoAfsluiten_Click(); });
    QTimer::singleShot(50, &scope, [&] {
        EXPECT_TRUE(windows.splash() != nullptr);
        machine.clock.timeOfDay += 2001;
    });
    QTimer::singleShot(5000, &scope, [&] { QCoreApplication::exit(1); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
    EXPECT_FALSE(windows.mainWindow());
    EXPECT_FALSE(windows.splash());
}

} // namespace
