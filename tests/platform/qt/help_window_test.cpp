#include "platform/qt/HelpSitemap.h"
#include "sidewindows/qt/FrmAbout.h"
#include "support/qt/WindowWithHelp.h"

#include <QAction>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>

using namespace nv;
namespace fs = std::filesystem;

namespace {

const QString kFirstHeading = "Norvale Backup: gebruikershandleiding";

TEST(HelpSitemapTest, ReadsNamesPagesAndDepthsOfContentsAndIndex) {
    const std::pair<QByteArray, QList<HelpTopic>> cases[] = {
        // Nested lists give the depth; properties and nameless entries are no topics.
        {R"(<OBJECT type="text/site properties"><param name="ImageType" value="Folder"></OBJECT>
            <UL><LI><OBJECT type="text/sitemap"><param name="Name" value="Start">
                <param name="Local" value="index.html"></OBJECT>
              <UL><LI><object TYPE="text/sitemap"><PARAM NAME="name" VALUE="Deel"><param
                  name="local" value="deel.html"/></object>
                <LI><OBJECT type="text/sitemap"><param name="Local" value="leeg.html"></OBJECT>
              </UL>
              <LI><OBJECT type="text/sitemap"><param name="Name" value="Einde">
                <param name="Local" value="einde.html"></OBJECT></UL>)",
         {{"Start", "index.html", 0}, {"Deel", "deel.html", 1}, {"Einde", "einde.html", 0}}},
        {R"(<UL><LI><OBJECT type="text/sitemap"><param name="Name" value="kopi&#235;ren &amp; meer">
            <param name="Local" value="a.html"></OBJECT></UL>)",
         {{QString::fromUtf8("kopiëren & meer"), "a.html", 0}}},
        {R"(<OBJECT type="text/sitemap"><param name="Name" value="Los"></OBJECT>)",
         {{"Los", "", 0}}},
        {"<html><body>Geen inhoud</body></html>", {}},
    };
    for (const auto& [sitemap, topics] : cases)
        EXPECT_EQ(parseSitemap(sitemap), topics) << sitemap.toStdString();
}

QTreeWidgetItem* childNamed(QTreeWidgetItem* parent, const QString& name) {
    for (int i = 0; i < parent->childCount(); ++i)
        if (parent->child(i)->text(0) == name)
            return parent->child(i);
    return nullptr;
}

class HelpWindowTest : public nvtest::WindowWithHelp {
protected:
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
    // One book, the guide, with its sections, and the subsections under their section.
    ASSERT_EQ(help->contents->topLevelItemCount(), 1);
    QTreeWidgetItem* guide = help->contents->topLevelItem(0);
    EXPECT_EQ(guide->text(0), kFirstHeading);
    QTreeWidgetItem* backup = childNamed(guide, "Een backup maken");
    ASSERT_TRUE(backup);
    EXPECT_TRUE(childNamed(backup, "Oude backups opruimen"));

    // A click on a topic shows its page; back and forward walk the pages seen.
    help->contents->itemClicked(backup, 0);
    EXPECT_TRUE(help->page->toPlainText().startsWith("Een backup maken"));
    QTest::mouseClick(help->back, Qt::LeftButton);
    EXPECT_TRUE(help->page->toPlainText().startsWith(kFirstHeading));
    QTest::mouseClick(help->forward, Qt::LeftButton);
    EXPECT_EQ(help->contents->currentItem(), backup);

    QVariant picture = help->page->loadResource(QTextDocument::ImageResource,
                                                QUrl("help:/screenshots/copy-1.png"));
    EXPECT_TRUE(picture.toByteArray().startsWith("\x89PNG"));
    QList<QListWidgetItem*> terms = help->index->findItems("Wizard", Qt::MatchStartsWith);
    ASSERT_FALSE(terms.isEmpty());
    help->index->itemClicked(terms.front());
    EXPECT_TRUE(help->page->toPlainText().startsWith("Een backup terugzetten"));
}

TEST_F(HelpWindowTest, AMissingOrUnreadableHelpFileGivesOneBoxThatNamesIt) {
    const std::string notFound = "Het helpbestand '" + App.HelpFile + "' kan niet gevonden worden.";
    const std::tuple<const char*, std::function<void()>, std::string> cases[] = {
        {"missing", [&] { fs::remove(helpFile()); }, notFound},
        {"no help file", [&] { machine.temp.write("Norvale/NV BU tool.chm", "MZ geen hulp"); },
         "Het helpbestand '" + App.HelpFile + "' kan niet gelezen worden."},
        {"a folder", [&] { fs::remove(helpFile()), fs::create_directory(helpFile()); }, notFound},
    };
    for (const auto& [what, spoil, text] : cases) {
        SCOPED_TRACE(what);
        spoil();
        machine.boxes.shown.clear();
        window.MoHelp->trigger();
        settle();
        ASSERT_EQ(machine.boxes.shown.size(), 1u);
        EXPECT_EQ(machine.boxes.shown[0].text, text);
        EXPECT_EQ(machine.boxes.shown[0].title, "Norvale Backup");
        EXPECT_EQ(machine.boxes.shown[0].icon, Icon::Exclamation);
        EXPECT_FALSE(helpWindow());
    }
}

} // namespace
