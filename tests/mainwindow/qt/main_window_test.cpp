#include "backup/qt/CopyWindow.h"
#include "mainwindow/FrmMainBackupWindows.h"
#include "mainwindow/qt/MainWindow.h"
#include "platform/qt/HelpKey.h"
#include "platform/qt/QtHelpViewer.h"
#include "sidewindows/qt/AboutWindow.h"
#include "startup/OpenHelp.h"
#include "support/ProgramFolder.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QMovie>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// The main window over a production folder with two files, backing up to a stick E: with one
// backup; the program's folder holds no clip.
class MainWindowTest : public ::testing::Test {
protected:
    MainWindowTest() {
        machine.temp.write("Norvale/NV.ini", "x");
        machine.temp.write("Stick/Backup2026-11-16/NV.ini", "x");
        machine.process.path = machine.temp.drive("Program");
        fs::create_directories(machine.temp.native("Program"));
        nvtest::useProgramFolder(machine, "E:", {"NV.ini", "C:\\Docs\\a.doc"});
        window.form().Form_Load();
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    template <typename W = QWidget> W* find(const char* name) { return window.findChild<W*>(name); }
    QAction* action(const char* name) { return find<QAction>(name); }
    QPushButton* button(const char* name) { return find<QPushButton>(name); }
    QString caption(const char* name) { return find<QLabel>(name)->text(); }
    // Menu entries and double clicks queue their work.
    static void settle() { QTest::qWait(10); }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    MainWindow window;
};

TEST_F(MainWindowTest, WhatTheUserDoesReachesTheForm) {
    auto heading = [&] { return caption("LblRestore_0"); };
    auto boxShown = [&] { return machine.boxes.shown.size() == 1; };
    auto dialogShown = [&] { return machine.dialogs.titles.size() == 1; };
    const std::tuple<const char*, std::function<bool()>> steps[] = {
        {"CmdSelectFiles", dialogShown},
        {"MoVoegToe", dialogShown},
        {"CmdVerwijder", boxShown},
        {"MoVerwijder", boxShown},
        {"Cmd_Backup", [&] { return !machine.boxes.shown.empty(); }},
        {"moBackUp", [&] { return !machine.boxes.shown.empty(); }},
        {"CmdDeleteDir", boxShown},
        {"CmdRestore", [&] { return heading().endsWith("1 van 5"); }},
        {"CmdWizRestore_0", [&] { return heading().endsWith("2 van 5"); }},
        {"CmdWizRestore_1", [&] { return heading().endsWith("1 van 5"); }},
        {"CmdWizRestore_2", [&] { return find("PicRestore")->isHidden(); }},
        {"moRestore", [&] { return !find("PicRestore")->isHidden(); }},
        {"CmdWizRestore_2", [&] { return find("PicRestore")->isHidden(); }}};
    for (const auto& [name, reached] : steps) {
        machine.boxes.shown.clear();
        machine.dialogs.titles.clear();
        if (QAction* item = action(name))
            item->trigger();
        else
            button(name)->click();
        settle();
        EXPECT_TRUE(reached()) << name;
    }

    auto* folders = find<QListWidget>("TargetDirectories");
    emit folders->itemDoubleClicked(folders->item(1));
    settle();
    EXPECT_TRUE(caption("Lbl_InhoudDir").endsWith("Backup2026-11-16"));
    folders->setCurrentRow(0);
    QTest::keyClick(folders, Qt::Key_Return);
    EXPECT_TRUE(caption("Lbl_InhoudDir").endsWith("E:\\"));

    auto* drives = find<QComboBox>("TargetDrive");
    drives->setCurrentIndex(drives->findText("C:", Qt::MatchStartsWith));
    EXPECT_TRUE(caption("Lbl_InhoudDir").endsWith("C:\\"));

    window.form().blnDriveLost = true;
    find<QTimer>("Timer1")->start(5);
    QTest::qWait(50);
    EXPECT_FALSE(window.form().blnDriveLost);
    action("MoAfsluiten")->trigger();
    settle();
    EXPECT_FALSE(window.isVisible());
}

TEST_F(MainWindowTest, TheWindowKeepsItsProportionsAtTheScreensDpi) {
    const double dpi = window.screen()->logicalDotsPerInchY();
    // Each run says what it expects, so that a screen left at 96 dpi cannot pass at 200 %.
    EXPECT_EQ(dpi, qEnvironmentVariableIsSet("NV_TEST_DPI")
                       ? qEnvironmentVariableIntValue("NV_TEST_DPI")
                       : 96);
    auto near = [&](int pixels, int twipsValue) {
        return std::abs(pixels - twipsValue * dpi / 1440) <= 1;
    };
    for (const auto& [name, at] : {std::pair{"TxtLastBackup", QRect(240, 120, 7695, 375)},
                                   {"LstSelectedFiles", {240, 1080, 9375, 2010}},
                                   {"fraDirectory", {240, 4320, 9375, 2655}},
                                   {"TargetFileLst", {6000, 240, 3015, 1455}},
                                   {"CmdWizRestore_0", {7365, 2175, 2160, 405}}}) {
        const QRect shown = find(name)->geometry();
        EXPECT_TRUE(near(shown.x(), at.x()) && near(shown.y(), at.y()) &&
                    near(shown.width(), at.width()) && near(shown.height(), at.height()))
            << name << " at " << dpi << " dpi";
    }
    EXPECT_TRUE(near(window.height(), 9000));
}

TEST_F(MainWindowTest, BackUpIsGreenAsDrawn) {
    const QImage backUp = button("Cmd_Backup")->grab().toImage();
    EXPECT_EQ(QColor(backUp.pixel(4, backUp.height() / 2)), QColor(0, 192, 0));
}

TEST_F(MainWindowTest, WhileACopyWorksTheClipMovesAndNoInputOrTickIsServed) {
    fs::copy_file(fs::path(NV_SOURCE_DIR) / "assets/install/FILECOPY.GIF",
                  machine.temp.native("Program/FILECOPY.GIF"));
    FrmMainBackupWindows windows(window.form());
    windows.subShowCopyWindow();
    auto* copy = window.findChild<CopyWindow*>();
    ASSERT_TRUE(copy && copy->isVisible());
    EXPECT_FALSE(copy->close());
    int frames = 0, ticks = 0;
    QObject::connect(copy->findChild<QLabel*>("Animation1")->movie(), &QMovie::frameChanged,
                     [&] { ++frames; });
    auto* timer = find<QTimer>("Timer1");
    QObject::connect(timer, &QTimer::timeout, [&] { ++ticks; });
    timer->start(50);
    auto* list = find<QListWidget>("LstSelectedFiles");
    auto input = [&] {
        QTest::mouseClick(button("CmdSelectFiles"), Qt::LeftButton);
        QTest::keyClick(list, Qt::Key_A, Qt::ControlModifier);
    };
    QTimer::singleShot(150, input);
    windows.runCopy([] { std::this_thread::sleep_for(std::chrono::milliseconds(600)); });
    EXPECT_GE(frames, 4);
    EXPECT_EQ(ticks, 0);
    settle();
    EXPECT_TRUE(machine.dialogs.titles.empty() && list->selectedItems().isEmpty());
    // The same input outside a copy is served, so the copy was what held it.
    input();
    settle();
    EXPECT_EQ(machine.dialogs.titles.size(), 1u);
    EXPECT_EQ(list->selectedItems().size(), 2);
    windows.closeCopyWindow();
    EXPECT_FALSE(window.findChild<CopyWindow*>());
}

TEST_F(MainWindowTest, F1AndTheMenuOpenTheHelpFileModalOverAbout) {
    fs::copy_file(NV_HELP_FILE, machine.temp.native("Norvale/help.chm"));
    App.HelpFile = machine.temp.drive("Norvale\\help.chm");
    QtHelpViewer viewer;
    HelpKey key([&] { subOpenHelp(viewer); });
    qApp->installEventFilter(&key);
    // Whether the help window stands, and modal; it is closed.
    auto shown = [&] {
        settle();
        HelpWindow* help = viewer.window();
        const std::pair result{help && help->isVisible(), help && help->isModal()};
        if (help)
            help->close();
        settle();
        return result;
    };
    action("MoHelp")->trigger();
    EXPECT_EQ(shown(), std::pair(true, false));

    std::pair<bool, bool> overAbout;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, [&] {
        if (auto* about = qobject_cast<AboutWindow*>(QApplication::activeModalWidget())) {
            poll.stop();
            QTest::keyClick(about->findChild<QWidget*>("cmdOK"), Qt::Key_F1);
            overAbout = shown();
            about->reject();
        }
    });
    poll.start(5);
    action("MoAbout")->trigger();
    settle();
    EXPECT_EQ(overAbout, std::pair(true, true));
    EXPECT_TRUE(machine.boxes.shown.empty());
    qApp->removeEventFilter(&key);
}

} // namespace
