#include "platform/qt/HelpWindow.h"
#include "platform/qt/ShowHelp.h"
#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/qt/HelpKey.h"
#include "startup/AppSettings.h"
#include "support/ProgramFolder.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <set>
#include <sstream>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// The user guide, its lines joined into one, blanks as single spaces.
std::string guideText() {
    std::ifstream file(NV_GUIDE, std::ios::binary);
    std::stringstream text;
    text << file.rdbuf();
    return std::regex_replace(text.str(), std::regex(R"(\s+)"), " ");
}

std::vector<std::string> allOf(const std::string& text, const std::string& pattern) {
    std::vector<std::string> found;
    std::regex re(pattern);
    for (auto it = std::sregex_iterator(text.begin(), text.end(), re); it != std::sregex_iterator();
         ++it)
        found.push_back((*it)[1].str());
    return found;
}

std::string caption(const QString& text) {
    return QString(text).remove('&').toStdString();
}

// A stick with a backup of loose files, one of files and a folder, and one of a folder alone.
class GuideTest : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("Norvale/NV.ini", "x");
        machine.temp.write("Stick/Backup2026-11-16/NV.ini", "x");
        machine.temp.write("Stick/Backup2026-11-15/NV.ini", "x");
        machine.temp.write("Stick/Backup2026-11-15/Docs/a.doc", "x");
        machine.temp.write("Stick/Backup2026-11-14/Docs/a.doc", "x");
        nvtest::useProgramFolder(machine, "E:", {"NV.ini"});
        fs::copy_file(NV_HELP_FILE, machine.temp.native("Norvale/NV BU tool.chm"));
        App.HelpFile = machine.temp.drive("Norvale") + "\\NV BU tool.chm";
        qApp->installEventFilter(&key);
        window.Form_Load();
        window.show();
    }
    void TearDown() override {
        qApp->removeEventFilter(&key);
        delete helpWindow();
    }
    static void settle() {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }
    QListWidgetItem* folderItem(const QString& name) {
        for (int i = 0; i < window.TargetDirectories->count(); ++i)
            if (window.TargetDirectories->item(i)->text().endsWith(name))
                return window.TargetDirectories->item(i);
        return nullptr;
    }
    // Deletes a backup folder the way the guide tells: open it, then the button.
    void deleteFolder(const QString& name) {
        QListWidgetItem* item = folderItem(name);
        ASSERT_TRUE(item) << name.toStdString();
        window.TargetDirectories->setCurrentItem(item);
        QTest::keyClick(window.TargetDirectories, Qt::Key_Return);
        settle();
        ASSERT_FALSE(window.CmdDeleteDir->isHidden()) << name.toStdString();
        machine.boxes.answer(Answer::Yes);
        QTest::mouseClick(window.CmdDeleteDir, Qt::LeftButton);
        settle();
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    HelpKey key{[] { return App.HelpFile; }, showHelp};
    FrmMain window;
};

TEST_F(GuideTest, WhatTheGuidePromisesTheProgramDoes) {
    const std::string guide = guideText();

    // Keys: each one the guide has the user press does what it says there.
    std::set<std::string> keys;
    for (const std::string& key : allOf(guide, R"([Dd]ruk op (\w+))"))
        keys.insert(key);
    EXPECT_EQ(keys, (std::set<std::string>{"Enter", "F1"}));
    // A click on a folder only selects it; Enter opens it and offers it for deletion.
    window.TargetDirectories->setCurrentItem(folderItem("Backup2026-11-16"));
    QTest::mouseClick(
        window.TargetDirectories->viewport(), Qt::LeftButton, {},
        window.TargetDirectories->visualItemRect(folderItem("Backup2026-11-16")).center());
    settle();
    EXPECT_TRUE(window.CmdDeleteDir->isHidden());
    QTest::keyClick(window.TargetDirectories, Qt::Key_Return);
    settle();
    EXPECT_EQ(window.TargetDirectories->path(), "E:\\Backup2026-11-16");
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_F1);
    ASSERT_TRUE(helpWindow() && helpWindow()->isVisible());

    // Captions: every one in bold is a button, a frame or a box answer the user meets.
    std::set<std::string> captions = {"OK", "Annuleren", "Ja", "Nee"};
    for (QWidget* owner : std::initializer_list<QWidget*>{&window, helpWindow()}) {
        for (auto* button : owner->findChildren<QAbstractButton*>())
            captions.insert(caption(button->text()));
        for (auto* frame : owner->findChildren<QGroupBox*>())
            captions.insert(caption(frame->title()));
    }
    for (const std::string& bold : allOf(guide, R"(\*\*([^*]+)\*\*)"))
        EXPECT_TRUE(captions.count(bold))
            << "the guide names a caption the program lacks: " << bold;

    // Menu items: every path in the guide leads to an item of the main window's menu.
    for (const std::string& path : allOf(guide, R"(\*([^*<>]+ > [^*]+)\*)")) {
        std::string menu = path.substr(0, path.find(" > "));
        std::string item = path.substr(path.find(" > ") + 3);
        bool found = false;
        for (QAction* top : window.menuBar()->actions())
            if (caption(top->text()) == menu && top->menu())
                for (QAction* action : top->menu()->actions())
                    found = found || caption(action->text()) == item;
        EXPECT_TRUE(found) << "no menu item " << path;
    }

    // Backup folders: every name the guide shows has the form the program gives them.
    for (const std::string& name : allOf(guide, R"((Backup ?\d[^\s`*,.]*))"))
        EXPECT_TRUE(std::regex_match(name, std::regex(R"(Backup\d{4}-\d\d-\d\d(\(\d+\))?)")))
            << name;

    // Deleting old backups: loose files go with their folder; a folder that holds folders
    // stays, without its loose files, with the box the guide quotes.
    deleteFolder("Backup2026-11-16");
    EXPECT_FALSE(machine.temp.exists("Stick/Backup2026-11-16"));
    ASSERT_FALSE(machine.boxes.shown.empty());
    EXPECT_NE(guide.find("*" + machine.boxes.shown.back().text + "*"), std::string::npos)
        << machine.boxes.shown.back().text;
    for (const char* name : {"Backup2026-11-15", "Backup2026-11-14"}) {
        deleteFolder(name);
        EXPECT_TRUE(machine.temp.exists(std::string("Stick/") + name + "/Docs/a.doc")) << name;
        EXPECT_NE(guide.find("*" + machine.boxes.shown.back().text + "*"), std::string::npos)
            << machine.boxes.shown.back().text;
    }
    EXPECT_FALSE(machine.temp.exists("Stick/Backup2026-11-15/NV.ini"));
}

} // namespace
