#include "backup/qt/CopyWindow.h"
#include "mainwindow/FrmMainBackupWindows.h"
#include "mainwindow/qt/MainWindow.h"
#include "platform/qt/HelpKey.h"
#include "platform/qt/QtHelpViewer.h"
#include "restore/qt/ShapeControl.h"
#include "sidewindows/qt/AboutWindow.h"
#include "sidewindows/qt/SplashWindow.h"
#include "startup/OpenHelp.h"
#include "support/ProgramFolder.h"

#include <QAccessible>
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
#include <cmath>
#include <gtest/gtest.h>
#include <thread>

using namespace nv;
namespace fs = std::filesystem;

namespace {

// The contrast of a colour on another as the rules for readable text measure it.
double contrast(QRgb a, QRgb b) {
    auto luminance = [](QRgb rgb) {
        double sum = 0.05;
        for (auto [value, weight] :
             {std::pair{qRed(rgb), 0.2126}, {qGreen(rgb), 0.7152}, {qBlue(rgb), 0.0722}}) {
            const double c = value / 255.0;
            sum += weight * (c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4));
        }
        return sum;
    };
    return std::max(luminance(a), luminance(b)) / std::min(luminance(a), luminance(b));
}

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

// Every control has its name and is spoken by what it shows; the splash goes on a character or a
// click on its frame, About's link and OK reach their handlers.
TEST_F(MainWindowTest, EveryControlIsNamedAndTheSideWindowsAnswer) {
    CopyWindow copy(&window);
    AboutWindow about;
    about.form().Form_Load();
    QPointer<SplashWindow> splash = new SplashWindow;
    splash->form().Form_Load();
    // Each window's spoken name, then its controls' as name=spoken; screen readers on Linux name
    // a drop-down list by its entry.
    const std::pair<QWidget*, QString> windows[] = {
        {&window, "Norvale Backup & Restore |TxtLastBackup=Laatste backup|Label1=Onderstaande "
                  "bestanden worden naar de backupschijf verzonden|LstSelectedFiles=Geselecteerde "
                  "bestanden|Shape1=Markering|Cmd_Backup=Back Up|CmdSelectFiles=Voeg bestand toe "
                  "aan lijst|CmdVerwijder=Verwijder bestand uit lijst|fraDirectory=Inhoud Backup "
                  "schijf|TargetDrive=E:|TargetDirectories=Mappen|TargetFileLst=Bestanden|"
                  "Lbl_InhoudDir=Bestanden in de map E:\\|CmdDeleteDir=Verwijder map|CmdVervers="
                  "Ververs|CmdRestore=Terugzetten Backup . . .|PicRestore=Terugzetten stap voor "
                  "stap|LblRestore_0=|CmdWizRestore_0=Volgende >>>|CmdWizRestore_1=<<< Vorige|"
                  "CmdWizRestore_2=Stoppen|StatusBar=Statusbalk"},
        {&copy, "Kopieren|Animation1=Animatie van het kopi\u00ebren|Pbr=Voortgang|Text1=Bestand "
                "dat gekopieerd wordt|Label1=Bestanden worden gekopieerd. Even geduld a.u.b"},
        {&about, "Tessaly Backup Tool|Image1=Logo|lblTitle=Norvale Backup Tool|lblVersion=Versie "
                 "1.7.1|TxtInfo=Informatie|LblMail=support@tessaly.example|cmdOK=OK"},
        {splash, "Norvale Backup|Frame1=Startscherm|Image2=Banner|Image1=Beeldmerk|lblProductName="
                 "Norvale Backup|lblVersion=Version 1.7.1"}};
    auto spoken = [](QWidget* widget) {
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    };
    for (const auto& [shown, names] : windows) {
        const QStringList parts = names.split('|');
        EXPECT_EQ(spoken(shown), parts[0]);
        for (const QString& part : parts.mid(1)) {
            const QString name = part.section('=', 0, 0);
            QWidget* control = shown->findChild<QWidget*>(name);
            ASSERT_TRUE(control) << name.toStdString();
            EXPECT_EQ(spoken(control), part.section('=', 1)) << name.toStdString();
        }
    }
    EXPECT_EQ(action("moRestore")->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_R));

    auto gone = [&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return splash.isNull();
    };
    for (bool byKey : {true, false}) {
        if (!splash)
            splash = new SplashWindow;
        QWidget* frame = splash->findChild<QWidget*>("Frame1");
        QTest::keyClick(splash, Qt::Key_Left);
        QTest::mouseClick(splash->findChild<QWidget*>("Image2"), Qt::LeftButton);
        ASSERT_FALSE(gone());
        byKey ? QTest::keyClick(splash, Qt::Key_A)
              : QTest::mouseClick(frame, Qt::LeftButton, {}, QPoint(3, frame->height() - 3));
        EXPECT_TRUE(gone()) << byKey;
    }
    about.show();
    auto* link = about.findChild<QWidget*>("LblMail");
    QTest::mouseClick(link, Qt::LeftButton);
    EXPECT_EQ(link->palette().color(QPalette::WindowText), QColor(192, 0, 0));
    about.findChild<QPushButton*>("cmdOK")->click();
    EXPECT_FALSE(about.isVisible());
}

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

    window.form().subButtons(false);
    button("CmdVervers")->click();
    EXPECT_TRUE(button("CmdVervers")->isHidden());
    window.resize(window.width(), window.height() / 2);
    EXPECT_NEAR(pixelsToTwips(window.height()), 9000, 15);

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
    nvtest::FolderDrive plugged('F', machine.temp.native("Stick"));
    drives->showPopup();
    drives->hidePopup();
    EXPECT_GE(drives->findText("F:", Qt::MatchStartsWith), 0);

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

// Back Up is green as drawn, with a caption that reads at 4.5 to 1 or better; the
// highlight is red and painted at each of its thousand steps; a long caption wraps.
TEST_F(MainWindowTest, WhatTheFacePaintsItself) {
    const QImage backUp = button("Cmd_Backup")->grab().toImage();
    const QRgb face = backUp.pixel(4, backUp.height() / 2);
    EXPECT_EQ(QColor(face), QColor(0, 192, 0));
    double best = 1;
    for (int y = 4; y < backUp.height() - 4; ++y)
        for (int x = 4; x < backUp.width() - 4; ++x)
            best = std::max(best, contrast(backUp.pixel(x, y), face));
    EXPECT_GE(best, 4.5);

    auto* shape = find<ShapeControl>("Shape1");
    button("CmdRestore")->click();
    const int paints = shape->paints();
    button("CmdWizRestore_0")->click();
    EXPECT_GE(shape->paints() - paints, 1000);
    const QImage outline = shape->grab().toImage();
    EXPECT_EQ(QColor(outline.pixel(2, outline.height() / 2)), QColor(255, 0, 0));
    button("CmdWizRestore_2")->click();

    machine.temp.write("Stick/Backup2026-11-16/Administratie2026/Kwartaal4/a.txt", "x");
    window.form().TargetDirectories.setPath("E:\\Backup2026-11-16\\Administratie2026\\Kwartaal4");
    // More rows of dark ink than one line of the caption holds.
    const QImage wrapped = button("CmdDeleteDir")->grab().toImage();
    int inkRows = 0;
    for (int y = 3; y < wrapped.height() - 3; ++y)
        for (int x = 3; x < wrapped.width() - 3; ++x)
            if (qGray(wrapped.pixel(x, y)) < 100 && ++inkRows)
                break;
    EXPECT_GT(inkRows, button("CmdDeleteDir")->fontMetrics().height());
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
    // Whether the help window stands, and modal; it is closed. The page it shows the
    // accessibility check reads.
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
