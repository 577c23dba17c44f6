#include "backup/qt/FrmCopy.h"
#include "backup/qt/QtBackupWindows.h"
#include "mainwindow/qt/FrmMain.h"
#include "platform/FailureText.h"
#include "platform/qt/Twips.h"
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

namespace {

// The clip the program ships, as the script made it.
const std::filesystem::path kShippedClip =
    std::filesystem::path(__FILE__).parent_path() / "../../../assets/install/FILECOPY.GIF";

// The program runs from a folder of its own, with the clip beside it.
class CopyWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.process.path = machine.temp.drive("Program");
        std::filesystem::create_directories(machine.temp.native("Program"));
        std::filesystem::copy_file(kShippedClip, clip());
    }

    std::filesystem::path clip() const { return machine.temp.native("Program/FILECOPY.GIF"); }

    nvtest::TestMachine machine;
};

int failureNumber(const std::function<void()>& step) {
    try {
        step();
    } catch (const FileFailure& failure) {
        return failure.Number;
    }
    return 0;
}

// The clip is found in any letters.
TEST_F(CopyWindowTest, AtLoadTheWindowShowsItsTextsInItsPlacesAndPlaysTheClipUntilTheRunCloses) {
    std::filesystem::rename(clip(), machine.temp.native("Program/filecopy.gif"));
    FrmCopy window;
    window.Form_Load();

    EXPECT_EQ(window.objectName(), "Frm_Copy");
    EXPECT_EQ(window.windowTitle(), "Kopieren");
    EXPECT_EQ(window.Label1->text(), "Bestanden worden gekopieerd. Even geduld a.u.b");
    EXPECT_EQ(window.Text1->text(), "Text1");
    EXPECT_EQ(window.size(), QSize(twips(4605), twips(3090)));
    EXPECT_EQ(window.minimumSize(), window.maximumSize());
    for (QWidget* control :
         std::initializer_list<QWidget*>{window.Animation1, window.Pbr, window.Text1})
        EXPECT_FALSE(control->accessibleName().isEmpty()) << control->objectName().toStdString();
    EXPECT_FALSE(window.windowFlags() &
                 (Qt::WindowCloseButtonHint | Qt::WindowSystemMenuHint |
                  Qt::WindowMinimizeButtonHint | Qt::WindowMaximizeButtonHint));

    // The clip moves, and at the tests' 96 dots per inch it fills its box without stretching.
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

TEST_F(CopyWindowTest, AClipThatIsMissingOrBrokenFailsTheLoadWith76) {
    const std::function<void()> breakings[] = {
        [&] { std::filesystem::resize_file(clip(), 300); },
        [&] { std::ofstream(clip(), std::ios::trunc) << "geen plaatje\r\n"; },
        [&] { std::filesystem::remove(clip()); }};
    for (const auto& breakClip : breakings) {
        breakClip();
        EXPECT_EQ(failureNumber([] { FrmCopy().Form_Load(); }), kFailPathNotFound);
    }

    // The run sees the same failure, and no window is left standing.
    FrmMain main;
    QtBackupWindows windows(main);
    EXPECT_EQ(failureNumber([&] { windows.subShowCopyWindow(); }), kFailPathNotFound);
    EXPECT_EQ(windows.copyWindow(), nullptr);
}

class BackupWindowsTest : public CopyWindowTest {
protected:
    FrmMain main;
    QtBackupWindows windows{main};
};

TEST_F(BackupWindowsTest, TheRunShowsWritesAndClosesTheWindow) {
    windows.subShowCopyWindow();
    FrmCopy* window = windows.copyWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(window->Text1->text(), "Even geduld aub");
    EXPECT_EQ(window->clip()->state(), QMovie::Running);

    windows.setProgressMax(3);
    windows.setProgressValue(3);
    EXPECT_EQ(window->Pbr->maximum(), 3);
    EXPECT_EQ(window->Pbr->value(), 3);
    windows.setCopyText("Kopi\u00ebren NV_Ledger01.mdb");
    windows.setStatusText("Kopi\u00ebren NV_Ledger01.mdb");
    EXPECT_EQ(window->Text1->text(), QString::fromUtf8("Kopi\u00ebren NV_Ledger01.mdb"));
    EXPECT_EQ(main.panelText(1), QString::fromUtf8("Kopi\u00ebren NV_Ledger01.mdb"));

    windows.closeCopyWindow();
    EXPECT_EQ(windows.copyWindow(), nullptr);
    // The failure path may write to the window and close it again after it is closed.
    windows.setCopyText("x");
    windows.setProgressValue(1);
    windows.closeCopyWindow();

    // Each run has a window of its own that starts afresh.
    windows.subShowCopyWindow();
    EXPECT_EQ(windows.copyWindow()->Pbr->value(), 0);
    EXPECT_EQ(windows.copyWindow()->Text1->text(), "Even geduld aub");
}

TEST_F(BackupWindowsTest, WhileACopyWorksTheClipMovesAndNoInputOrTickIsServed) {
    main.LstSelectedFiles->addItems({"C:\\a.doc", "C:\\b.doc"});
    main.show();
    windows.subShowCopyWindow();
    int frames = 0;
    QObject::connect(windows.copyWindow()->clip(), &QMovie::frameChanged, [&] { ++frames; });
    int clicks = 0;
    QObject::connect(main.Cmd_Backup, &QPushButton::clicked, [&] { ++clicks; });
    int ticks = 0;
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
    try {
        windows.runCopy([] { throw fileFailure(kFailTargetFull); });
        ADD_FAILURE() << "the failure did not arrive";
    } catch (const FileFailure& failure) {
        EXPECT_EQ(failure.Number, kFailTargetFull);
        EXPECT_EQ(failure.Description, failureDescription(kFailTargetFull));
    }
    EXPECT_TRUE(main.Timer1->isActive());
}

} // namespace
