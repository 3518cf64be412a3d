// The help beside the built program: F1 and the Help buttons of every window, with real events.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class HelpOfTheProgram : public testing::Test
{
protected:
    HelpOfTheProgram() { m_place.Synchronise(); }

    static QString Titled(const QString &page) { return page + u" - Worklog Remote Help"_s; }

    /// Asks for help, sees the page, closes the viewer; `window` is then in front again.
    void SeePage(ProgramUnderTest &program, const QString &page, const QString &window)
    {
        program.WaitForTitle(u"frmHelp"_s, Titled(page));
        program.Key(u"Escape"_s);
        program.WaitUntilClosed(u"frmHelp"_s);
        program.WaitUntilActive(window);
    }
    void ByKeyAndButton(ProgramUnderTest &program, const QString &page, const QString &window)
    {
        program.WaitUntilActive(window); // a key pressed earlier goes nowhere
        program.Key(u"F1"_s);
        SeePage(program, page, window);
        program.Click(u"cmdHelp"_s);
        SeePage(program, page, window);
    }

    WorkPlace m_place;
    VirtualDisplay m_display;
};

} // namespace

TEST_F(HelpOfTheProgram, OpensAtEveryWindowByKeyAndByButton)
{
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForFocus(u"dtpDate"_s);
    ByKeyAndButton(program, u"The main window"_s, u"frmEntryList"_s);

    program.Click(u"cmdCustomer"_s);
    program.WaitForWindow(u"frmLookup"_s);
    ByKeyAndButton(program, u"Looking up a code"_s, u"frmLookup"_s);
    program.Key(u"Escape"_s);

    program.Click(u"cmdHrsSumm"_s);
    program.WaitForWindow(u"frmHrsSumm"_s);
    ByKeyAndButton(program, u"The hours summary"_s, u"frmHrsSumm"_s);
    program.Key(u"Escape"_s);

    program.Click(u"cmdTransFilter"_s);
    program.WaitForWindow(u"frmTransFilter"_s);
    ByKeyAndButton(program, u"The transaction filter"_s, u"frmTransFilter"_s);
    // A dialog of a dialog, and back.
    program.Click(u"cmdActivity"_s);
    program.WaitForWindow(u"frmLookup"_s);
    ByKeyAndButton(program, u"Looking up a code"_s, u"frmLookup"_s);
    program.Key(u"Escape"_s);
    program.WaitUntilActive(u"frmTransFilter"_s);
    program.Key(u"F1"_s);
    SeePage(program, u"The transaction filter"_s, u"frmTransFilter"_s);
    program.Key(u"Escape"_s);

    program.ChooseByKeys(u"Options"_s, u"Configure"_s);
    program.WaitForWindow(u"frmConfigure"_s);
    ByKeyAndButton(program, u"The synchronization settings"_s, u"frmConfigure"_s);
    program.Key(u"Escape"_s);

    program.ChooseByKeys(u"Options"_s, u"Sync"_s);
    program.WaitForWindow(u"frmSyncOptions"_s);
    ByKeyAndButton(program, u"The synchronization options"_s, u"frmSyncOptions"_s);
    program.Key(u"Escape"_s);
}

TEST_F(HelpOfTheProgram, IsUsedWithKeysAndMouseBesideAModalDialog)
{
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForFocus(u"dtpDate"_s);
    program.Click(u"cmdTransFilter"_s);
    program.WaitForWindow(u"frmTransFilter"_s);
    program.Key(u"F1"_s);
    program.WaitForTitle(u"frmHelp"_s, Titled(u"The transaction filter"_s));

    program.Key(u"alt+Home"_s);
    program.WaitForTitle(u"frmHelp"_s, Titled(u"Worklog Remote"_s));
    program.Click(u"cmdBack"_s);
    program.WaitForTitle(u"frmHelp"_s, Titled(u"The transaction filter"_s));
    program.Key(u"ctrl+f"_s);
    program.WaitForFocus(u"txtSearch"_s);
    program.Type(u"mileage"_s);
    program.WaitForText(u"txtSearch"_s, u"mileage"_s);

    // The dialog goes on beside it.
    program.ComeBackTo(u"frmTransFilter"_s);
    program.Click(u"txtCustomer"_s);
    program.WaitForFocus(u"txtCustomer"_s);
    program.Type(u"0100"_s);
    program.WaitForText(u"txtCustomer"_s, u"0100"_s);
    program.MoveFocusTo(u"cmdOK"_s, u"Tab"_s); // the help may cover it
    program.Key(u"Return"_s);
    program.WaitUntilClosed(u"frmTransFilter"_s);
    EXPECT_TRUE(program.IsOpen(u"frmHelp"_s));
}

TEST_F(HelpOfTheProgram, TellsAboutTheQuestionThatIsAsked)
{
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForFocus(u"dtpDate"_s);
    program.ChooseByKeys(u"Utilities"_s, u"Delete Databases"_s);
    program.WaitForMessage(u"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\n"
                           u"Do you wish to continue?"_s);
    program.Key(u"F1"_s);
    program.WaitForTitle(u"frmHelp"_s, Titled(u"Deleting the databases"_s));
    program.Key(u"Escape"_s);
    program.WaitUntilClosed(u"frmHelp"_s);
    program.Answer(u"No"_s);
    EXPECT_TRUE(QFile::exists(m_place.ProgramFolder() + u"/Company-WkLg.db"_s));
}

TEST_F(HelpOfTheProgram, ThatIsMissingIsToldWithTheNameOfItsFile)
{
    const QString file = m_place.InProgramFolder(u"WL.HLP"_s);
    ASSERT_TRUE(QFile::remove(file));
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForFocus(u"dtpDate"_s);
    program.Key(u"F1"_s);
    ProgramUnderTest::WaitUntil(u"the message"_s,
        [&] { return program.MessageText().startsWith(u"The help file is missing: "_s + file); });
    program.Answer(u"OK"_s);
    EXPECT_TRUE(program.IsOpen(u"frmEntryList"_s));
}

TEST_F(HelpOfTheProgram, OfALockedWindowIsAboutItsDamagedFileUntilThatIsSoundAgain)
{
    ASSERT_TRUE(QFile::resize(m_place.InProgramFolder(u"ABCCustomers-WkLg.db"_s), 5000));
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForMessage(u"Please perform a synchronization first."_s);
    program.AnswerByKeys(u"Return"_s);
    EXPECT_FALSE(program.IsEnabled(u"txtCustomer"_s));
    ByKeyAndButton(program, u"A file that cannot be used"_s, u"frmEntryList"_s);
    program.Key(u"alt+s"_s);
    program.WaitForFocus(u"dtpDate"_s);
    EXPECT_TRUE(program.IsEnabled(u"txtCustomer"_s));
    ByKeyAndButton(program, u"The main window"_s, u"frmEntryList"_s);
}
