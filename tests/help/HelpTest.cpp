// The help: every page of the built file, every link, the search, the way back, and F1.

#include "help/clsHelp.h"

#include "platform/HelpPage.h"
#include "tests/support/Modal.h"
#include "tests/support/PrintQt.h"
#include "tests/support/Recorded.h"
#include "tests/support/Windows.h"

#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAreArray;

namespace {

const QString HelpFile = QStringLiteral(WORKLOG_HELP_FILE);

QStringList PageNames(const modHelp &help)
{
    QStringList names;
    for (const modHelp::Chapter &chapter : help.Chapters()) {
        for (const modHelp::Page &page : chapter.Pages)
            names.append(page.Name);
    }
    return names;
}

/// A resource file without any page of the help.
QByteArray ForeignResource()
{
    QFile file(HelpFile);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QByteArray content = file.readAll();
    const QByteArray folder("\0p\0a\0g\0e\0s", 10);
    EXPECT_EQ(content.count(folder), 1);
    return content.replace(folder, QByteArray("\0o\0t\0h\0e\0r", 10));
}

/// A link as it lies on the page: where to click, and where it wants to go.
struct Link
{
    int Position;
    QString Target;
};

QList<Link> LinksOf(const QTextBrowser &browser)
{
    QList<Link> links;
    for (QTextBlock block = browser.document()->firstBlock(); block.isValid();
         block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextFragment text = part.fragment();
            if (text.charFormat().isAnchor())
                links.append({text.position() + 1, text.charFormat().anchorHref()});
        }
    }
    return links;
}

/// The viewer on the built file.
class Help : public testing::Test
{
protected:
    Help() { EXPECT_TRUE(m_pages.Load()) << m_pages.Failure().toStdString(); }

    /// Scrolls to the link and clicks it.
    static void Follow(QTextBrowser &browser, const Link &link)
    {
        QTextCursor cursor(browser.document());
        cursor.setPosition(link.Position);
        browser.setTextCursor(cursor);
        browser.ensureCursorVisible();
        const QPoint place = browser.cursorRect(cursor).center();
        QTest::mouseClick(browser.viewport(), Qt::LeftButton, {}, place);
    }

    static QStringList ShownPages(const frmHelp &viewer)
    {
        QStringList titles;
        auto &tree = Control<QTreeWidget>(viewer, "treContents");
        for (QTreeWidgetItemIterator item(&tree, QTreeWidgetItemIterator::NotHidden);
             *item != nullptr; ++item) {
            if ((*item)->parent() != nullptr)
                titles.append((*item)->text(0));
        }
        return titles;
    }

    modHelp m_pages{HelpFile};
};

QString WindowTitleOf(const QString &page)
{
    return page + u" - Worklog Remote Help"_s;
}

} // namespace

TEST_F(Help, HasAPageForEveryWindowOfTheProgram)
{
    QStringList windows;
    for (const char *room : {"entry", "lookup", "summary", "sync", "help"}) {
        const QDir folder(QStringLiteral(WORKLOG_SOURCES) + u'/' + QString::fromLatin1(room));
        for (const QString &form : folder.entryList({u"*.ui"_s}))
            windows.append(form.chopped(3));
    }
    ASSERT_THAT(windows, Contains(u"frmEntryList"_s));
    ASSERT_GE(windows.size(), 7);
    for (const QString &window : windows)
        EXPECT_TRUE(m_pages.HasPage(window)) << window.toStdString();
}

TEST_F(Help, HasAPageForEveryConcept)
{
    for (const char *concept_ : {"billing-status", "billing-option", "multipliers", "approvals",
             "filter", "synchronisation", "failures", "first-steps", "expenses", "keyboard",
             "delete-databases", "first-synchronisation", "damaged-files"})
        EXPECT_TRUE(m_pages.HasPage(QString::fromLatin1(concept_))) << concept_;
}

TEST_F(Help, ListsEveryPageOfItsSourcesInTheContents)
{
    QStringList written;
    const QDir folder(QStringLiteral(WORKLOG_SOURCES "/help/pages"));
    for (const QString &file : folder.entryList({u"*.md"_s}))
        written.append(file.chopped(3));
    ASSERT_TRUE(written.removeOne(modHelp::FirstPage()));
    EXPECT_THAT(PageNames(m_pages), UnorderedElementsAreArray(written));
    for (const QString &page : written)
        EXPECT_FALSE(m_pages.Title(page).isEmpty()) << page.toStdString();
}

TEST_F(Help, OpensEveryPageFromTheContentsAndEveryLinkLeadsToAPage)
{
    frmHelp viewer(m_pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(modHelp::FirstPage());
    auto &tree = Control<QTreeWidget>(viewer, "treContents");
    auto &browser = Control<QTextBrowser>(viewer, "brwPage");
    int pages = 0;
    int links = 0;
    for (QTreeWidgetItemIterator item(&tree); *item != nullptr; ++item) {
        if ((*item)->parent() == nullptr)
            continue;
        ++pages;
        tree.scrollToItem(*item);
        QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, tree.visualItemRect(*item).center());
        const QString title = (*item)->text(0);
        ASSERT_EQ(viewer.windowTitle(), WindowTitleOf(title));
        EXPECT_GT(browser.document()->characterCount(), 200) << title.toStdString();

        for (const Link &link : LinksOf(browser)) {
            ++links;
            const QString target = link.Target.chopped(3);
            ASSERT_TRUE(m_pages.HasPage(target))
                << title.toStdString() << " -> " << link.Target.toStdString();
            Follow(browser, link);
            ASSERT_EQ(viewer.windowTitle(), WindowTitleOf(m_pages.Title(target)))
                << "from " << title.toStdString();
            EXPECT_EQ(tree.currentItem()->text(0), m_pages.Title(target));
            QTest::mouseClick(&Control<QPushButton>(viewer, "cmdBack"), Qt::LeftButton);
            ASSERT_EQ(viewer.windowTitle(), WindowTitleOf(title));
        }
    }
    EXPECT_EQ(pages, PageNames(m_pages).size());
    EXPECT_GT(links, 30);
}

TEST_F(Help, ShowsTheSamePageHoweverItIsReached)
{
    frmHelp viewer(m_pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(u"filter"_s);
    const QString html = Control<QTextBrowser>(viewer, "brwPage").document()->toHtml();
    viewer.ShowPage(u"failures"_s);
    QTest::keyClick(&viewer, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(viewer.windowTitle(), WindowTitleOf(u"The filter"_s));
    EXPECT_EQ(Control<QTextBrowser>(viewer, "brwPage").document()->toHtml(), html);
}

TEST_F(Help, GoesBackForwardAndToTheFirstPageByKeys)
{
    frmHelp viewer(m_pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(u"multipliers"_s);
    EXPECT_FALSE(Control<QPushButton>(viewer, "cmdBack").isEnabled());
    viewer.ShowPage(u"approvals"_s);
    QTest::keyClick(&viewer, Qt::Key_Left, Qt::AltModifier);
    EXPECT_EQ(viewer.windowTitle(), WindowTitleOf(u"Multipliers"_s));
    QTest::keyClick(&viewer, Qt::Key_Right, Qt::AltModifier);
    EXPECT_EQ(viewer.windowTitle(), WindowTitleOf(u"Approved and on hold"_s));
    EXPECT_FALSE(Control<QPushButton>(viewer, "cmdForward").isEnabled());
    QTest::keyClick(&viewer, Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(viewer.windowTitle(), WindowTitleOf(u"Worklog Remote"_s));
}

TEST_F(Help, FollowsALinkWithTabAndEnter)
{
    frmHelp viewer(m_pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(u"frmSyncOptions"_s);
    auto &browser = Control<QTextBrowser>(viewer, "brwPage");
    ASSERT_TRUE(browser.hasFocus());
    QTest::keyClick(&browser, Qt::Key_Tab);
    QTest::keyClick(&browser, Qt::Key_Return);
    EXPECT_EQ(viewer.windowTitle(), WindowTitleOf(u"The first synchronization"_s));
}

TEST_F(Help, FindsThePagesThatHaveAllWordsAndMarksThem)
{
    frmHelp viewer(m_pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(modHelp::FirstPage());
    QTest::keyClick(&viewer, Qt::Key_F, Qt::ControlModifier);
    auto &search = Control<QLineEdit>(viewer, "txtSearch");
    ASSERT_TRUE(search.hasFocus());

    QTest::keyClicks(&search, u"OVERTIME"_s);
    EXPECT_THAT(ShownPages(viewer), ElementsAre(u"Multipliers"_s));
    EXPECT_EQ(Control<QLabel>(viewer, "lblFound").text(), u"1 page"_s);
    QTest::keyClick(&search, Qt::Key_Return);
    EXPECT_EQ(viewer.windowTitle(), WindowTitleOf(u"Multipliers"_s));
    auto &browser = Control<QTextBrowser>(viewer, "brwPage");
    ASSERT_FALSE(browser.extraSelections().isEmpty());
    EXPECT_EQ(browser.extraSelections().constFirst().cursor.selectedText(), u"overtime"_s);
    EXPECT_EQ(browser.textCursor().selectedText(), u"overtime"_s);

    QTest::keyClicks(&search, u" nosuchword"_s);
    EXPECT_THAT(ShownPages(viewer), IsEmpty());
    EXPECT_EQ(Control<QLabel>(viewer, "lblFound").text(), u"No page has all of these words."_s);

    search.selectAll();
    QTest::keyClick(&search, Qt::Key_Delete);
    EXPECT_EQ(ShownPages(viewer).size(), PageNames(m_pages).size());
    EXPECT_TRUE(Control<QLabel>(viewer, "lblFound").text().isEmpty());
    EXPECT_TRUE(browser.extraSelections().isEmpty());
}

TEST_F(Help, EnterInTheSearchGoesThroughAllPlacesOfAllPagesFound)
{
    frmHelp viewer(m_pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(modHelp::FirstPage());
    auto &search = Control<QLineEdit>(viewer, "txtSearch");
    QTest::keyClicks(&search, u"multiplier"_s);
    const QStringList found = ShownPages(viewer);
    ASSERT_GT(found.size(), 2);
    QStringList visited;
    for (int press = 0; press < 200 && visited.size() < found.size(); ++press) {
        QTest::keyClick(&search, Qt::Key_Return);
        ASSERT_EQ(Control<QTextBrowser>(viewer, "brwPage").textCursor().selectedText().toLower(),
            u"multiplier"_s);
        if (!visited.contains(viewer.windowTitle()))
            visited.append(viewer.windowTitle());
    }
    QStringList titles;
    for (const QString &page : found)
        titles.append(WindowTitleOf(page));
    EXPECT_THAT(visited, UnorderedElementsAreArray(titles));
}

TEST_F(Help, EveryControlThatTakesTheFocusHasAName)
{
    frmHelp viewer(m_pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(u"filter"_s);
    int named = 0;
    for (const QWidget *control : viewer.findChildren<QWidget *>()) {
        if (control->focusPolicy() == Qt::NoFocus || !control->isVisible()
            || control->objectName().startsWith(u"qt_"))
            continue;
        QAccessibleInterface *spoken
            = QAccessible::queryAccessibleInterface(const_cast<QWidget *>(control));
        ASSERT_NE(spoken, nullptr);
        EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty())
            << control->objectName().toStdString();
        ++named;
    }
    EXPECT_GE(named, 4);
}

namespace {

/// F1 anywhere in the program.
class F1 : public testing::Test
{
protected:
    static frmHelp *Viewer()
    {
        for (QWidget *window : QApplication::topLevelWidgets()) {
            if (auto *viewer = qobject_cast<frmHelp *>(window))
                return viewer;
        }
        return nullptr;
    }
    static QString ViewerTitle()
    {
        return Viewer() == nullptr ? QString() : Viewer()->windowTitle();
    }

    clsRecordedMessages m_messages;
};

} // namespace

TEST_F(F1, OpensThePageOfTheActiveWindow)
{
    const clsHelp help(HelpFile, m_messages);
    QWidget window;
    window.setObjectName(u"frmHrsSumm"_s);
    QLineEdit box(&window);
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClick(&box, Qt::Key_F1);
    ASSERT_NE(Viewer(), nullptr);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"The hours summary"_s));
    EXPECT_TRUE(QTest::qWaitForWindowActive(Viewer()));
    QTest::keyClick(Viewer(), Qt::Key_F1);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"This help"_s));
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
}

TEST_F(F1, OpensThePageAboutTheStateThatTheWindowIsIn)
{
    const clsHelp help(HelpFile, m_messages);
    QWidget window;
    window.setObjectName(u"frmEntryList"_s);
    QLineEdit box(&window);
    ASSERT_TRUE(ShowActive(window));
    window.setProperty(HelpPageProperty, u"damaged-files"_s);
    QTest::keyClick(&box, Qt::Key_F1);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"A file that cannot be used"_s));
    window.setProperty(HelpPageProperty, QVariant());
    QTest::keyClick(&box, Qt::Key_F1);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"The main window"_s));
}

TEST_F(F1, TogetherWithShiftIsLeftToTheWindow)
{
    const clsHelp help(HelpFile, m_messages);
    QLineEdit window;
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClick(&window, Qt::Key_F1, Qt::ShiftModifier);
    EXPECT_EQ(Viewer(), nullptr);
}

TEST_F(F1, InAWindowWithoutAPageOpensThatOfItsOpenerAndElseTheContents)
{
    const clsHelp help(HelpFile, m_messages);
    QWidget opener;
    opener.setObjectName(u"frmConfigure"_s);
    ASSERT_TRUE(ShowActive(opener));
    QDialog browser(&opener);
    ASSERT_TRUE(ShowActive(browser));
    QTest::keyClick(&browser, Qt::Key_F1);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"The synchronization settings"_s));

    QWidget stranger;
    ASSERT_TRUE(ShowActive(stranger));
    QTest::keyClick(&stranger, Qt::Key_F1);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"Worklog Remote"_s));
}

TEST_F(F1, InAMenuClosesItAndOpensThePageOfItsWindow)
{
    const clsHelp help(HelpFile, m_messages);
    QWidget window;
    window.setObjectName(u"frmEntryList"_s);
    ASSERT_TRUE(ShowActive(window));
    QMenu menu(&window);
    menu.addAction(u"Configure"_s);
    menu.popup(window.mapToGlobal(QPoint(5, 5)));
    ASSERT_EQ(QApplication::activePopupWidget(), &menu);
    QTest::keyClick(&menu, Qt::Key_F1);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"The main window"_s));

    // Also while the viewer is open.
    ASSERT_TRUE(ShowActive(window));
    menu.popup(window.mapToGlobal(QPoint(5, 5)));
    ASSERT_EQ(QApplication::activePopupWidget(), &menu);
    QTest::keyClick(&menu, Qt::Key_F1);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(F1, InAMessageBoxOpensThePageAboutWhatItSays)
{
    struct Case
    {
        const char *Message;
        const char *Title;
    };
    const std::vector<Case> cases = {
        {"Please perform a synchronization first.", "The first synchronization"},
        {"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\nDo you wish to continue?",
            "Deleting the databases"},
        {"Failed to delete databases.", "Deleting the databases"},
        {"Do you want to save changes?", "The main window"},
        {"Delete this Entry?", "The main window"},
        {"Unable to launch MAS 90 or MAS 200.", "When something fails"},
        {"Error #1013 (The disk is full).", "When something fails"},
    };
    const clsHelp help(HelpFile, m_messages);
    for (const Case &one : cases) {
        QMessageBox box;
        box.setText(QString::fromLatin1(one.Message));
        PlayModal(box, [&] {
            QTest::keyClick(
                box.buttons().isEmpty() ? &box : QApplication::focusWidget(), Qt::Key_F1);
            EXPECT_EQ(ViewerTitle(), WindowTitleOf(QString::fromLatin1(one.Title))) << one.Message;
            box.close();
        });
    }
}

TEST_F(F1, InAModalDialogOpensAViewerThatTakesTheInput)
{
    const clsHelp help(HelpFile, m_messages);
    QWidget window;
    window.setObjectName(u"frmEntryList"_s);
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClick(&window, Qt::Key_F1); // open already, in front of the main window
    QDialog dialog(&window);
    dialog.setObjectName(u"frmLookup"_s);
    PlayModal(dialog, [&] {
        QTest::keyClick(&dialog, Qt::Key_F1);
        EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"Looking up a code"_s));
        EXPECT_TRUE(QTest::qWaitForWindowActive(Viewer()));
        // An event of the window system, which the dialog would keep from a window of no concern.
        auto &back = Control<QPushButton>(*Viewer(), "cmdBack");
        QTest::mouseClick(Viewer()->windowHandle(), Qt::LeftButton, {},
            back.mapTo(Viewer(), back.rect().center()));
        EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"The main window"_s));
        QTest::keyClick(Viewer()->windowHandle(), Qt::Key_Escape);
        EXPECT_FALSE(Viewer()->isVisible());
        EXPECT_TRUE(dialog.isVisible());
        dialog.close();
    });
}

TEST_F(F1, TheViewerOutlivesTheDialogThatItWasAskedFrom)
{
    const clsHelp help(HelpFile, m_messages);
    {
        QDialog dialog;
        dialog.setObjectName(u"frmLookup"_s);
        PlayModal(dialog, [&] {
            QTest::keyClick(&dialog, Qt::Key_F1);
            dialog.close();
        });
    }
    ASSERT_NE(Viewer(), nullptr);
    EXPECT_TRUE(Viewer()->isVisible());
    QTest::mouseClick(Viewer()->windowHandle(), Qt::LeftButton, {}, QPoint(3, 3));
    QTest::keyClick(Viewer()->windowHandle(), Qt::Key_Home, Qt::AltModifier);
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"Worklog Remote"_s));
}

TEST_F(F1, TheViewerIsClosedByTheProgramAndOpensAgain)
{
    clsHelp help(HelpFile, m_messages);
    help.CloseViewer(); // there is none yet
    QWidget window;
    window.setObjectName(u"frmEntryList"_s);
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClick(&window, Qt::Key_F1);
    ASSERT_NE(Viewer(), nullptr);
    ASSERT_TRUE(Viewer()->isVisible());
    help.CloseViewer();
    EXPECT_FALSE(Viewer()->isVisible());
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_TRUE(Viewer()->isVisible());
    EXPECT_EQ(ViewerTitle(), WindowTitleOf(u"The main window"_s));
}

TEST_F(F1, WithoutAHelpFileTellsWhichIsMissing)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"WL.HLP"_s);
    const clsHelp help(file, m_messages);
    QWidget window;
    ASSERT_TRUE(ShowActive(window));
    QTest::keyClick(&window, Qt::Key_F1);
    ASSERT_EQ(m_messages.Texts().size(), 1);
    EXPECT_TRUE(m_messages.Texts()[0].startsWith(u"The help file is missing: "_s + file));
    EXPECT_EQ(Viewer(), nullptr);

    // Put there afterwards, it is found at once.
    ASSERT_TRUE(QFile::copy(HelpFile, file));
    QTest::keyClick(&window, Qt::Key_F1);
    EXPECT_EQ(m_messages.Texts().size(), 1);
    EXPECT_NE(Viewer(), nullptr);
}

TEST_F(F1, TellsThatAHelpFileCannotBeRead)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"WL.HLP"_s);
    for (const QByteArray &content :
        {QByteArray("not a help file"), QByteArray(), ForeignResource()}) {
        QFile damaged(file);
        ASSERT_TRUE(damaged.open(QIODevice::WriteOnly));
        damaged.write(content);
        damaged.close();
        const clsHelp help(file, m_messages);
        QWidget window;
        ASSERT_TRUE(ShowActive(window));
        QTest::keyClick(&window, Qt::Key_F1);
        ASSERT_FALSE(m_messages.Texts().isEmpty());
        EXPECT_TRUE(
            m_messages.Texts().constLast().startsWith(u"The help file cannot be read: "_s + file));
        EXPECT_EQ(Viewer(), nullptr);
    }
}
