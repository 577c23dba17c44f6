#include "backup/qt/FrmCopy.h"
#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/FrmMainBackupWindows.h"
#include "platform/FailureText.h"
#include "support/FailureOf.h"
#include "support/ProgramFolder.h"
#include "support/TestMachine.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMouseEvent>
#include <QMovie>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <thread>

using namespace nv;
using nvtest::failureOf;
namespace fs = std::filesystem;

namespace {

const fs::path kShippedClip = fs::path(NV_SOURCE_DIR) / "assets/install/FILECOPY.GIF";

// The program runs from a folder of its own, with the clip beside it.
class CopyWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.process.path = machine.temp.drive("Program");
        fs::create_directories(machine.temp.native("Program"));
        fs::copy_file(kShippedClip, clip());
    }
    fs::path clip() const { return machine.temp.native("Program/FILECOPY.GIF"); }

    nvtest::TestMachine machine;
    FrmMain main;
    FrmMainBackupWindows windows{main};
};

TEST_F(CopyWindowTest, AtLoadTheWindowShowsItsTextsAndPlaysTheClipFoundInAnyLetters) {
    fs::rename(clip(), machine.temp.native("Program/filecopy.gif"));
    FrmCopy window;
    window.Form_Load();
    EXPECT_EQ(window.windowTitle(), "Kopieren");
    EXPECT_EQ(window.Label1->text(), "Bestanden worden gekopieerd. Even geduld a.u.b");
    EXPECT_EQ(window.Text1->text(), "Text1");
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    for (QWidget* control :
         std::initializer_list<QWidget*>{window.Animation1, window.Pbr, window.Text1})
        EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
    EXPECT_FALSE(window.windowFlags() &
                 (Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint |
                  Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));
    // At the tests' 96 dots per inch the clip fills its box without stretching.
    ASSERT_NE(window.clip(), nullptr);
    EXPECT_EQ(window.clip()->state(), QMovie::Running);
    EXPECT_GE(window.clip()->frameCount(), 12);
    EXPECT_EQ(window.clip()->frameRect().size(), window.Animation1->size());

    // The user cannot close the window; the run can.
    window.show();
    EXPECT_FALSE(window.close());
    EXPECT_TRUE(window.isVisible());
    window.Unload();
    EXPECT_FALSE(window.isVisible());
    EXPECT_EQ(window.clip()->state(), QMovie::NotRunning);
}

// A clip that cannot be played fails the load by a number of its own, so that the run's box
// Other names the clip rather than blaming the backup drive, and the run makes nothing.
TEST_F(CopyWindowTest, AClipThatIsMissingOrBrokenFailsTheRunWithItsOwnBoxAndNoFolder) {
    const std::function<void()> breakings[] = {
        [&] { fs::resize_file(clip(), 300); },
        [&] { std::ofstream(clip(), std::ios::trunc) << "geen plaatje\r\n"; },
        [&] { fs::remove(clip()); }};
    for (const auto& breakClip : breakings) {
        breakClip();
        EXPECT_EQ(failureOf([] { FrmCopy().Form_Load(); }), kFailCopyClip);
    }

    // Back Up with the clip gone, a file to copy and an empty stick.
    machine.temp.write("Norvale/NV.ini", "rekeningen");
    fs::create_directories(machine.temp.native("Stick"));
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    nvtest::useProgramFolder(machine, "E:", {"NV.ini"});
    main.Form_Load();
    main.Cmd_Backup->click();
    ASSERT_EQ(machine.boxes.shown.size(), 2u);
    const MessageBoxRequest& other = machine.boxes.shown[1];
    EXPECT_EQ(other.title, "Norvale Backup");
    EXPECT_EQ(other.text, "95 De animatie FILECOPY.GIF ontbreekt in de map van het programma of "
                          "kan niet worden geopend. Installeer het programma opnieuw");
    EXPECT_EQ(other.icon, Icon::None);
    EXPECT_TRUE(fs::is_empty(machine.temp.native("Stick")));
    EXPECT_EQ(main.findChild<FrmCopy*>(), nullptr);
}

TEST_F(CopyWindowTest, WhileACopyWorksTheClipMovesAndNoInputOrTickIsServed) {
    main.LstSelectedFiles->addItems({"C:\\a.doc", "C:\\b.doc"});
    main.show();
    windows.subShowCopyWindow();
    int frames = 0, clicks = 0, ticks = 0;
    QObject::connect(windows.copyWindow()->clip(), &QMovie::frameChanged, [&] { ++frames; });
    QObject::connect(main.Cmd_Backup, &QPushButton::clicked, [&] { ++clicks; });
    QObject::connect(main.Timer1, &QTimer::timeout, [&] { ++ticks; });
    main.Timer1->start(50);

    // A click on Back Up and Ctrl+A in the list, as the copy works.
    auto input = [&] {
        const QPointF centre = main.Cmd_Backup->rect().center();
        for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
            QCoreApplication::postEvent(
                main.Cmd_Backup, new QMouseEvent(type, centre, main.Cmd_Backup->mapToGlobal(centre),
                                                 Qt::LeftButton, Qt::LeftButton, Qt::NoModifier));
        for (QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            QCoreApplication::postEvent(main.LstSelectedFiles,
                                        new QKeyEvent(type, Qt::Key_A, Qt::ControlModifier));
    };
    QTimer::singleShot(150, input);
    windows.runCopy([] { std::this_thread::sleep_for(std::chrono::milliseconds(600)); });
    EXPECT_GE(frames, 4);
    EXPECT_EQ(ticks, 0);
    EXPECT_TRUE(main.Timer1->isActive());
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 0);
    EXPECT_TRUE(main.LstSelectedFiles->selectedItems().isEmpty());
    // The same input outside a copy is served, so the copy was what held it.
    input();
    QCoreApplication::processEvents();
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(main.LstSelectedFiles->selectedItems().size(), 2);

    // A failure of the copy arrives at the run, and the drive watch goes on.
    EXPECT_EQ(failureOf([&] { windows.runCopy([] { throw fileFailure(kFailTargetFull); }); }),
              kFailTargetFull);
    EXPECT_TRUE(main.Timer1->isActive());

    // The failure path may write to the window after closing it; the next run starts afresh.
    windows.setProgressValue(3);
    ASSERT_EQ(windows.copyWindow()->Pbr->value(), 3);
    windows.closeCopyWindow();
    windows.setCopyText("x");
    windows.setProgressValue(1);
    windows.closeCopyWindow();
    windows.subShowCopyWindow();
    EXPECT_EQ(windows.copyWindow()->Pbr->value(), 0);
    EXPECT_EQ(windows.copyWindow()->Text1->text(), "Even geduld aub");
}

} // namespace
