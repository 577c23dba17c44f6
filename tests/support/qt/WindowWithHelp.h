#pragma once

#include "mainwindow/qt/FrmMain.h"
#include "platform/qt/HelpKey.h"
#include "platform/qt/HelpWindow.h"
#include "platform/qt/ShowHelp.h"
#include "support/ProgramFolder.h"

#include <QApplication>
#include <filesystem>
#include <gtest/gtest.h>

namespace nvtest {

// The program's window over a production folder that holds the help file of the build, with a
// stick E: holding one backup, and F1 installed as the program installs it. A test's own SetUp puts
// its files in place before calling this one.
class WindowWithHelp : public ::testing::Test {
protected:
    void SetUp() override {
        machine.temp.write("Norvale/NV.ini", "x");
        machine.temp.write("Stick/Backup2026-11-16/NV.ini", "x");
        useProgramFolder(machine, "E:", {"NV.ini"});
        std::filesystem::copy_file(NV_HELP_FILE, helpFile());
        nv::App.HelpFile = machine.temp.drive("Norvale") + "\\NV BU tool.chm";
        qApp->installEventFilter(&key);
        window.Form_Load();
        window.show();
    }
    void TearDown() override {
        qApp->removeEventFilter(&key);
        delete nv::helpWindow();
    }
    std::filesystem::path helpFile() { return machine.temp.native("Norvale/NV BU tool.chm"); }
    // Menu items queue their work, and the keys they send are posted.
    static void settle() {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }

    TestMachine machine;
    FolderDrive stick{'E', machine.temp.native("Stick")};
    nv::HelpKey key{[] { return nv::App.HelpFile; }, nv::showHelp};
    nv::FrmMain window;
};

} // namespace nvtest
