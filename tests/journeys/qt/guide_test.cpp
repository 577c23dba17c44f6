#include "mainwindow/qt/TargetLists.h"
#include "support/qt/WindowWithHelp.h"

#include <QAbstractButton>
#include <QAction>
#include <QGroupBox>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QTest>
#include <fstream>
#include <functional>
#include <regex>
#include <set>
#include <sstream>

using namespace nv;

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

// Beside the stick's backup of loose files, one of files and a folder, one of a folder alone,
// and an empty one.
class GuideTest : public nvtest::WindowWithHelp {
protected:
    void SetUp() override {
        std::filesystem::create_directories(machine.temp.native("Stick/Backup2026-11-13"));
        machine.temp.write("Stick/Backup2026-11-15/NV.ini", "x");
        machine.temp.write("Stick/Backup2026-11-15/Docs/a.doc", "x");
        machine.temp.write("Stick/Backup2026-11-14/Docs/a.doc", "x");
        WindowWithHelp::SetUp();
    }
    QListWidgetItem* folderItem(const QString& name) {
        for (int i = 0; i < window.TargetDirectories->count(); ++i)
            if (window.TargetDirectories->item(i)->text().endsWith(name))
                return window.TargetDirectories->item(i);
        return nullptr;
    }
    // Opens a backup folder the way the guide tells: choose it, press Enter.
    void open(const QString& name) {
        QListWidgetItem* item = folderItem(name);
        ASSERT_TRUE(item) << name.toStdString();
        window.TargetDirectories->setCurrentItem(item);
        QTest::keyClick(window.TargetDirectories, Qt::Key_Return);
        settle();
        EXPECT_EQ(window.TargetDirectories->path(), "E:\\" + name);
    }
    bool inMenu(const std::string& path) {
        const std::string menu = path.substr(0, path.find(" > ")),
                          item = path.substr(menu.size() + 3);
        for (QAction* top : window.menuBar()->actions())
            if (caption(top->text()) == menu && top->menu())
                for (QAction* action : top->menu()->actions())
                    if (caption(action->text()) == item)
                        return true;
        return false;
    }
};

TEST_F(GuideTest, WhatTheGuidePromisesTheProgramDoes) {
    const std::string guide = guideText();
    // A click only chooses a folder; Enter opens it and offers it for deletion.
    QTest::mouseClick(
        window.TargetDirectories->viewport(), Qt::LeftButton, {},
        window.TargetDirectories->visualItemRect(folderItem("Backup2026-11-16")).center());
    settle();
    EXPECT_TRUE(window.CmdDeleteDir->isHidden());
    open("Backup2026-11-16");
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_F1);
    ASSERT_TRUE(helpWindow() && helpWindow()->isVisible());
    // The captions the user meets, with the delete button shown and the help window open.
    std::set<std::string> captions = {"OK", "Annuleren", "Ja", "Nee"};
    for (QWidget* owner : std::initializer_list<QWidget*>{&window, helpWindow()}) {
        for (auto* button : owner->findChildren<QAbstractButton*>())
            captions.insert(caption(button->text()));
        for (auto* frame : owner->findChildren<QGroupBox*>())
            captions.insert(caption(frame->title()));
    }

    const std::tuple<const char*, const char*, std::function<bool(const std::string&)>> claims[] = {
        {"a key to press, tried above", R"([Dd]ruk op (\w+))",
         [](const std::string& key) { return key == "Enter" || key == "F1"; }},
        {"a button, frame or box answer", R"(\*\*([^*]+)\*\*)",
         [&](const std::string& bold) { return captions.count(bold) > 0; }},
        {"a menu item", R"(\*([^*<>]+ > [^*]+)\*)",
         [&](const std::string& path) { return inMenu(path); }},
        {"a backup folder", R"((Backup ?\d[^\s`*,.]*))",
         [](const std::string& name) {
             return std::regex_match(name, std::regex(R"(Backup\d{4}-\d\d-\d\d(\(\d+\))?)"));
         }},
    };
    for (const auto& [kind, pattern, kept] : claims) {
        const std::vector<std::string> found = allOf(guide, pattern);
        EXPECT_FALSE(found.empty()) << "the guide names no " << kind;
        for (const std::string& claim : found)
            EXPECT_TRUE(kept(claim)) << "the program has no such " << kind << ": " << claim;
    }

    // Deleting old backups: after the question, loose files go with their folder; a folder that
    // holds folders, or nothing, stays with a box. Every box that ends a try is one the guide
    // quotes, and the panel goes back to the stick's root.
    const std::string several = "U heeft meerdere directories in deze file staan, u dient deze "
                                "\u00e9\u00e9n voor \u00e9\u00e9n te verwijderen";
    const std::tuple<const char*, Answer, bool> deletions[] = {
        {"Backup2026-11-16", Answer::No, true},  {"Backup2026-11-16", Answer::Yes, false},
        {"Backup2026-11-15", Answer::Yes, true}, {"Backup2026-11-14", Answer::Yes, true},
        {"Backup2026-11-13", Answer::Yes, true},
    };
    for (const auto& [name, answer, stays] : deletions) {
        SCOPED_TRACE(name);
        open(name);
        const size_t before = machine.boxes.shown.size();
        machine.boxes.answer(answer);
        QTest::mouseClick(window.CmdDeleteDir, Qt::LeftButton);
        settle();
        ASSERT_GT(machine.boxes.shown.size(), before);
        const MessageBoxRequest& question = machine.boxes.shown[before];
        EXPECT_EQ(question.text, std::string("Wilt u de map E:\\") + name + " verwijderen?");
        EXPECT_EQ(question.title, "Verwijderen Map");
        const std::string& last = machine.boxes.shown.back().text;
        EXPECT_EQ(last, stays && answer == Answer::Yes ? several : question.text);
        EXPECT_NE(guide.find("*" + last + "*"), std::string::npos) << last;
        EXPECT_EQ(machine.temp.exists(std::string("Stick/") + name), stays);
        EXPECT_EQ(window.TargetDirectories->path(), "E:\\");
    }
    EXPECT_FALSE(machine.temp.exists("Stick/Backup2026-11-15/NV.ini"));
    EXPECT_TRUE(machine.temp.exists("Stick/Backup2026-11-15/Docs/a.doc"));
    EXPECT_TRUE(machine.temp.exists("Stick/Backup2026-11-14/Docs/a.doc"));
}

} // namespace
