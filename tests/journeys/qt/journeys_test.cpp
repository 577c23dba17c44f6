// The whole program as a new user meets it: started through Main, worked through its windows,
// every box a real one answered by hand, the files real files in a temporary folder.
#include "mainwindow/qt/FrmMain.h"
#include "mainwindow/qt/StartWindows.h"
#include "mainwindow/qt/TargetLists.h"
#include "platform/DateText.h"
#include "platform/posix/DriveTable.h"
#include "startup/Main.h"
#include "support/TestMachine.h"
#include "support/qt/BoxRobot.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <unistd.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

const fs::path kClip = fs::path(NV_SOURCE_DIR) / "assets/install/FILECOPY.GIF";
const char* const kProduction[] = {"NV_Ledger01.mdb", "NV_Lists97.mdb", "panels.ini",
                                   "NV.ini",          "NV_Entity.NVD",  "Nota.ini",
                                   "Refresh.ini",     "NV_stock.NVD"};
using Titles = std::vector<QString>;
using Names = std::vector<std::string>;

Names namesIn(const fs::path& folder) {
    Names names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

// A machine with the finance program's folder (the production files, this program and its
// clip beside them) and an empty stick E:, on 17-11-2026.
class Journey : public ::testing::Test {
protected:
    void SetUp() override {
        for (const char* name : kProduction)
            machine.temp.write(std::string("Norvale/") + name, std::string("boeking van ") + name);
        fs::copy_file(kClip, production("FILECOPY.GIF"));
        machine.process.path = machine.temp.drive("Norvale");
        fs::create_directories(stick());
        driveTableOf(machine.platform).setFolder('E', stick().string());
    }
    void TearDown() override {
        quit();
        driveTableOf(machine.platform).remove('E');
    }

    fs::path stick() { return machine.temp.native("stick"); }
    fs::path production(const std::string& name) { return machine.temp.native("Norvale/" + name); }
    std::string settings() { return machine.temp.read("Norvale/NVbackuptool.ini"); }
    std::string backupFolder(int dayOffset, const std::string& suffix = "") {
        return "Backup" + isoDateText(machine.clock.date + dayOffset) + suffix;
    }
    std::string onStick(const std::string& folder, const std::string& name) {
        return machine.temp.read("stick/" + folder + "/" + name);
    }

    // Starts the program and lets the splash go with a key, as an impatient user does.
    FrmMain& start() {
        windows = std::make_unique<QtStartWindows>();
        EXPECT_EQ(Main(*windows), MainOutcome::Running);
        if (FrmSplash* splash = windows->splash())
            QTest::keyClick(splash, Qt::Key_Space);
        EXPECT_TRUE(QTest::qWaitFor([&] { return windows->splash() == nullptr; }, 2000));
        if (!windows->mainWindow())
            std::abort(); // the failure above is printed; nothing further can be checked
        return *windows->mainWindow();
    }
    // Bestand > Afsluiten, and the program has ended.
    void quit() {
        if (!windows || !windows->mainWindow())
            return;
        windows->mainWindow()->MoAfsluiten->trigger();
        EXPECT_TRUE(QTest::qWaitFor([&] { return windows->mainWindow() == nullptr; }, 2000));
        windows.reset();
    }
    // Backs up to E: and checks the user saw the question and the result.
    void backUp(FrmMain& window) {
        window.TargetDrive->setDrive("E:");
        robot.seen.clear();
        window.Cmd_Backup->click();
        EXPECT_EQ(robot.titles(), (Titles{"Backup maken", "Back Up"}));
    }

    // A backup to E: the day before, with the program closed since.
    void backUpTheDayBefore() {
        machine.clock.date -= 1;
        backUp(start());
        quit();
        machine.clock.date += 1;
        robot.seen.clear();
    }
    void next(FrmMain& window) { window.CmdWizRestore[0]->click(); }
    QString wizardText(FrmMain& window) { return window.LblRestore[1]->text(); }
    // Steps 3 to 5 of the wizard from the backup of dayOffset: the count, then the result.
    void restoreFrom(FrmMain& window, int dayOffset, int files) {
        window.TargetDirectories->setPath(QString::fromStdString("E:\\" + backupFolder(dayOffset)));
        next(window);
        EXPECT_TRUE(wizardText(window).contains(QString("U heeft %1 bestanden").arg(files)));
        next(window);
        EXPECT_EQ(wizardText(window), "Het terugzetten van de bestanden is gereed. \r\n");
    }

    nvtest::TestMachine machine;
    nvtest::BoxRobot robot;
    std::unique_ptr<QtStartWindows> windows;
};

TEST_F(Journey, AFirstStartOnAnEmptyMachine) {
    FrmMain& window = start();
    // The eight production files and the settings file itself, found without a question.
    EXPECT_EQ(window.panelText(1), "Aantal files: 9");
    EXPECT_EQ(window.TxtLastBackup->text(), "Laatste backup gemaakt op: 17-nov-2026 (Vandaag)");
    EXPECT_TRUE(window.Cmd_Backup->isVisible() && window.Cmd_Backup->isEnabled());
    quit();
    EXPECT_TRUE(robot.seen.empty());
}

TEST_F(Journey, AddingTwoFilesAndMakingTwoBackupsOnOneDay) {
    machine.temp.write("Documenten/offerte.doc", "offerte");
    machine.temp.write("Documenten/kas.xls", "kasboek");
    FrmMain& window = start();
    for (const char* file : {"offerte.doc", "kas.xls"}) {
        machine.dialogs.answers = {machine.temp.drive(std::string("Documenten\\") + file)};
        window.CmdSelectFiles->click();
    }
    EXPECT_EQ(window.panelText(1), "Aantal files: 11");

    backUp(window);
    EXPECT_EQ(namesIn(stick() / backupFolder(0)).size(), 11u);

    // Later that day the offer changes and the user backs up again: today's folder exists. (The
    // boxes' texts are the run's own test's.)
    machine.temp.write("Documenten/offerte.doc", "offerte, tweede versie");
    robot.seen.clear();
    robot.answer("");
    robot.answer("Ja");
    window.Cmd_Backup->click();
    EXPECT_EQ(robot.titles(), (Titles{"Backup maken", "Backup maken", "Back Up"}));
    EXPECT_EQ(namesIn(stick()), (Names{backupFolder(0), backupFolder(0, "(2)")}));
    EXPECT_EQ(onStick(backupFolder(0), "offerte.doc"), "offerte");
    EXPECT_EQ(onStick(backupFolder(0, "(2)"), "offerte.doc"), "offerte, tweede versie");
    EXPECT_NE(settings().find("LastBackup=" + shortDateText(machine.clock.date)),
              std::string::npos);
    // The run put both folders in the panel for the user to see, under the stick's root.
    EXPECT_EQ(window.TargetDirectories->count(), 3);
}

TEST_F(Journey, TheStickPulledDuringTheWatchAndPutBack) {
    FrmMain& window = start();
    window.TargetDrive->setDrive("E:");
    const fs::path away = machine.temp.native("stick-away");
    fs::rename(stick(), away);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !window.LblStation->text().isEmpty(); }, 3000));
    EXPECT_TRUE(window.LblStation->text().startsWith(
        "U heeft het station E: ontkoppeld, sluit deze weer aan\r\n"));

    // Back Up while it is away tells the user (the repaint of the panel after the run's box
    // meets the same); nothing is written anywhere.
    window.Cmd_Backup->click();
    ASSERT_GE(robot.seen.size(), 2u);
    EXPECT_EQ(robot.seen[1].title, "Norvale Backup");
    EXPECT_TRUE(robot.seen[1].text.startsWith("68 ")) << robot.seen[1].text.toStdString();
    EXPECT_TRUE(namesIn(away).empty());

    // Back, with a folder another machine put there: the panel shows it without a click.
    fs::create_directory(away / "Backup2026-11-10");
    fs::rename(away, stick());
    EXPECT_TRUE(QTest::qWaitFor([&] { return window.LblStation->text().isEmpty(); }, 3000));
    EXPECT_EQ(window.TargetDirectories->count(), 2);
    backUp(window);
    EXPECT_EQ(namesIn(stick()), (Names{"Backup2026-11-10", backupFolder(0)}));
}

TEST_F(Journey, AFullStick) {
    if (::geteuid() != 0)
        GTEST_SKIP() << "a size-limited stick needs root to mount";
    if (::mount("nvjourney", stick().c_str(), "tmpfs", 0, "size=256k") != 0)
        GTEST_SKIP() << "cannot mount tmpfs here";
    struct Unmount {
        fs::path point;
        ~Unmount() { ::umount2(point.c_str(), MNT_DETACH); }
    } unmount{stick()};
    // The ledger has grown past what the stick holds.
    std::ofstream(production("NV_Ledger01.mdb"), std::ios::binary) << std::string(400 << 10, 'L');
    FrmMain& window = start();
    window.TargetDrive->setDrive("E:");
    const std::string before = settings();

    window.Cmd_Backup->click();
    ASSERT_EQ(robot.titles(), (Titles{"Backup maken", "Fout bij schrijven naar backup schijf"}));
    EXPECT_EQ(robot.seen[1].text, "De backup schijf is vol, verwijder een oude backup map of "
                                  "gebruik een nieuwe schijf");
    EXPECT_EQ(settings(), before);
    // What is on the stick under a file's name is that file whole.
    for (const std::string& name : namesIn(stick() / backupFolder(0))) {
        ASSERT_NE(name[0], '.') << "a temporary file was left: " << name;
        EXPECT_EQ(onStick(backupFolder(0), name), machine.temp.read("Norvale/" + name));
    }
    // The program goes on working: the user clears the stick and tries again.
    std::ofstream(production("NV_Ledger01.mdb"), std::ios::binary) << "kleiner";
    fs::remove_all(stick() / backupFolder(0));
    backUp(window);
    EXPECT_EQ(onStick(backupFolder(0), "NV_Ledger01.mdb"), "kleiner");
}

TEST_F(Journey, ARestoreOfYesterdaysBackupAfterABadDay) {
    backUpTheDayBefore();
    // Tuesday goes wrong: the ledger and the settings of the finance program are damaged.
    machine.temp.write("Norvale/NV_Ledger01.mdb", "kapot");
    machine.temp.write("Norvale/NV.ini", "kapot");
    FrmMain& window = start();
    EXPECT_EQ(window.TxtLastBackup->text(),
              "Laatste backup gemaakt op: 16-nov-2026 (1 dagen geleden)");
    window.CmdRestore->click();
    next(window);
    for (int row = 0; row < window.LstSelectedFiles->count(); ++row) {
        QListWidgetItem* item = window.LstSelectedFiles->item(row);
        item->setSelected(item->text().endsWith("\\NV_Ledger01.mdb") ||
                          item->text().endsWith("\\NV.ini"));
    }
    next(window);
    restoreFrom(window, -1, 2);
    ASSERT_EQ(robot.titles(), Titles{"Terugzetten Backup"});
    EXPECT_EQ(robot.seen[0].pressed, "Ja");
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "boeking van NV_Ledger01.mdb");
    EXPECT_EQ(machine.temp.read("Norvale/NV.ini"), "boeking van NV.ini");
    next(window);
    EXPECT_TRUE(window.Cmd_Backup->isEnabled());
}

TEST_F(Journey, RestoreOnlyOnAMachineWhereTheDatabaseIsGone) {
    backUpTheDayBefore();
    fs::remove(production("NV_Ledger01.mdb"));
    robot.answer("Ja");
    FrmMain& window = start();
    ASSERT_EQ(robot.seen.size(), 1u);
    EXPECT_EQ(robot.seen[0].text, QString::fromStdString(kRestoreOnlyQuestion));
    EXPECT_EQ(window.intWizardStep, 1);
    // Step 2 offers every row of the list.
    next(window);
    next(window);
    restoreFrom(window, -1, 9);
    EXPECT_EQ(machine.temp.read("Norvale/NV_Ledger01.mdb"), "boeking van NV_Ledger01.mdb");
    // The three backup buttons stay hidden, also once the wizard has closed.
    next(window);
    for (QPushButton* hidden : {window.Cmd_Backup, window.CmdSelectFiles, window.CmdVerwijder})
        EXPECT_TRUE(hidden->isHidden()) << hidden->objectName().toStdString();
    quit();

    // With the database back the program starts as always.
    robot.seen.clear();
    FrmMain& after = start();
    EXPECT_TRUE(robot.seen.empty());
    EXPECT_FALSE(after.Cmd_Backup->isHidden());
}

} // namespace
