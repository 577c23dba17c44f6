#include "platform/qt/HelpSitemap.h"
#include "platform/qt/HelpWindow.h"
#include "platform/qt/ShowHelp.h"
#include "mainwindow/qt/FrmMain.h"
#include "platform/qt/HelpKey.h"
#include "sidewindows/qt/FrmAbout.h"
#include "startup/AppSettings.h"
#include "support/ProgramFolder.h"
#include "support/qt/BoxRobot.h"

#include <QAction>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>
#include <filesystem>
#include <gtest/gtest.h>

using namespace nv;
namespace fs = std::filesystem;

namespace {

const QString kFirstHeading = "Norvale Backup: gebruikershandleiding";

TEST(HelpSitemapTest, ReadsNamesPagesAndDepthsOfContentsAndIndex) {
    struct Case {
        const char* what;
        QByteArray sitemap;
        QList<HelpTopic> topics;
    };
    const Case cases[] = {
        {"nested lists give the depth; properties and nameless entries are no topics",
         R"(<OBJECT type="text/site properties"><param name="ImageType" value="Folder"></OBJECT>
            <UL><LI><OBJECT type="text/sitemap"><param name="Name" value="Start">
                <param name="Local" value="index.html"></OBJECT>
              <UL><LI><object TYPE="text/sitemap"><PARAM NAME="name" VALUE="Deel"><param
                  name="local" value="deel.html"/></object>
                <LI><OBJECT type="text/sitemap"><param name="Local" value="leeg.html"></OBJECT>
              </UL>
              <LI><OBJECT type="text/sitemap"><param name="Name" value="Einde">
                <param name="Local" value="einde.html"></OBJECT></UL>)",
         {{"Start", "index.html", 0}, {"Deel", "deel.html", 1}, {"Einde", "einde.html", 0}}},
        {"character references and markup in values are read as text",
         R"(<UL><LI><OBJECT type="text/sitemap"><param name="Name" value="kopi&#235;ren &amp; meer">
            <param name="Local" value="a.html"></OBJECT></UL>)",
         {{QString::fromUtf8("kopiëren & meer"), "a.html", 0}}},
        {"an entry without a page still names a topic",
         R"(<OBJECT type="text/sitemap">
            <param name="Name" value="Los"></OBJECT>)",
         {{"Los", "", 0}}},
        {"no sitemap at all", "<html><body>Geen inhoud</body></html>", {}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(parseSitemap(c.sitemap), c.topics) << c.what;
}

// The program's window over a program folder that holds the help file of the build, with F1
// installed as the program installs it.
class HelpWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        nvtest::useProgramFolder(machine, "E:", {"NV.ini"});
        machine.temp.write("Stick/Backup2026-11-16/NV.ini", "x");
        machine.temp.write("Norvale/NV.ini", "x");
        fs::copy_file(NV_HELP_FILE, helpFile());
        App.HelpFile = machine.temp.drive("Norvale") + "\\NV BU tool.chm";
        qApp->installEventFilter(&key);
        window.Form_Load();
        window.show();
    }
    void TearDown() override {
        qApp->removeEventFilter(&key);
        delete helpWindow();
    }
    fs::path helpFile() { return machine.temp.native("Norvale/NV BU tool.chm"); }
    // The menu item's work is queued, and the key it sends is posted.
    static void settle() {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }

    // The help window stands on the guide's first page; it is closed for the next try.
    void expectFirstPageShown(const char* after) {
        settle();
        HelpWindow* help = helpWindow();
        ASSERT_TRUE(help && help->isVisible()) << after;
        EXPECT_EQ(help->windowTitle(), "Help - Norvale Backup") << after;
        EXPECT_TRUE(help->page->toPlainText().startsWith(kFirstHeading)) << after;
        EXPECT_EQ(help->contents->currentItem()->text(0), kFirstHeading) << after;
        EXPECT_FALSE(help->back->isEnabled()) << after;
        help->close();
        QCoreApplication::processEvents();
    }

    nvtest::TestMachine machine;
    nvtest::FolderDrive stick{'E', machine.temp.native("Stick")};
    HelpKey key{[] { return App.HelpFile; }, showHelp};
    FrmMain window;
};

TEST_F(HelpWindowTest, F1InEveryWindowAndTheMenuItemOpenTheGuideOnItsFirstPage) {
    window.MoHelp->trigger();
    expectFirstPageShown("the menu item");

    QTest::keyClick(window.LstSelectedFiles, Qt::Key_F1);
    expectFirstPageShown("F1 in the main window");

    window.moRestore->trigger();
    QCoreApplication::processEvents();
    ASSERT_EQ(window.intWizardStep, 1);
    QTest::keyClick(window.CmdWizRestore[0], Qt::Key_F1);
    expectFirstPageShown("F1 in the wizard");

    // Over the modal About window the help comes up modal itself, or it could not be used.
    FrmAbout about;
    about.Form_Load();
    bool modalOverAbout = false;
    QTimer::singleShot(0, &about, [&] {
        QTest::keyClick(about.cmdOK, Qt::Key_F1);
        modalOverAbout = helpWindow() && helpWindow()->isModal();
        expectFirstPageShown("F1 in the About window");
        about.accept();
    });
    about.exec();
    EXPECT_TRUE(modalOverAbout);
    EXPECT_TRUE(machine.boxes.shown.empty());
}

TEST_F(HelpWindowTest, ContentsIndexPicturesAndBackAndForward) {
    QTest::keyClick(window.LstSelectedFiles, Qt::Key_F1);
    HelpWindow* help = helpWindow();
    ASSERT_TRUE(help);

    // Every heading of the guide is in the contents, the subsections under their section.
    QStringList top;
    for (int i = 0; i < help->contents->topLevelItemCount(); ++i)
        top << help->contents->topLevelItem(i)->text(0);
    EXPECT_EQ(top, QStringList{kFirstHeading});
    QTreeWidgetItem* guide = help->contents->topLevelItem(0);
    ASSERT_GE(guide->childCount(), 5);
    EXPECT_EQ(guide->child(1)->text(0), "Een backup maken");
    ASSERT_EQ(guide->child(1)->childCount(), 1);
    EXPECT_EQ(guide->child(1)->child(0)->text(0), "Oude backups opruimen");

    // A click on a topic shows its page; back and forward walk the pages seen.
    QTreeWidgetItem* backup = guide->child(1);
    help->contents->itemClicked(backup, 0);
    EXPECT_TRUE(help->page->toPlainText().startsWith("Een backup maken"));
    EXPECT_TRUE(help->back->isEnabled());
    QTest::mouseClick(help->back, Qt::LeftButton);
    EXPECT_TRUE(help->page->toPlainText().startsWith(kFirstHeading));
    EXPECT_TRUE(help->forward->isEnabled());
    QTest::mouseClick(help->forward, Qt::LeftButton);
    EXPECT_EQ(help->contents->currentItem(), backup);

    // The pictures come out of the help file.
    QVariant picture = help->page->loadResource(QTextDocument::ImageResource,
                                                QUrl("help:/screenshots/copy-1.png"));
    EXPECT_TRUE(picture.toByteArray().startsWith("\x89PNG"));

    // The index leads to the page of a term.
    QList<QListWidgetItem*> terms = help->index->findItems("Wizard", Qt::MatchStartsWith);
    ASSERT_FALSE(terms.isEmpty());
    help->index->itemClicked(terms.front());
    EXPECT_TRUE(help->page->toPlainText().startsWith("Een backup terugzetten"));
}

TEST_F(HelpWindowTest, AMissingOrUnreadableHelpFileGivesOneBoxThatNamesIt) {
    const std::string name = App.HelpFile;
    struct Case {
        const char* what;
        std::function<void()> spoil;
        std::string text;
    };
    const Case cases[] = {
        {"missing", [&] { fs::remove(helpFile()); },
         "Het helpbestand '" + name + "' kan niet gevonden worden."},
        {"no help file", [&] { machine.temp.write("Norvale/NV BU tool.chm", "MZ geen hulp"); },
         "Het helpbestand '" + name + "' kan niet gelezen worden."},
        {"a folder of that name",
         [&] {
             fs::remove(helpFile());
             fs::create_directory(helpFile());
         },
         "Het helpbestand '" + name + "' kan niet gevonden worden."},
    };
    for (const Case& c : cases) {
        c.spoil();
        machine.boxes.shown.clear();
        window.MoHelp->trigger();
        settle();
        ASSERT_EQ(machine.boxes.shown.size(), 1u) << c.what;
        EXPECT_EQ(machine.boxes.shown[0].text, c.text) << c.what;
        EXPECT_EQ(machine.boxes.shown[0].title, "Norvale Backup") << c.what;
        EXPECT_EQ(machine.boxes.shown[0].icon, Icon::Exclamation) << c.what;
        EXPECT_FALSE(helpWindow()) << c.what;
    }
}

} // namespace
