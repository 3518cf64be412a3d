// What the user sees when the disk refuses what the window was asked to do.

#include "platform/Paths.h"
#include "tests/entry/EntryWindow.h"

#include "store/StoreErrors.h"
#include "tests/entry/OtherProgram.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class RefusedSave : public EntryWindow
{
protected:
    RefusedSave()
    {
        for (const QString &description : {u"first"_s, u"second"_s})
            Company.Entries->push_back(SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s,
                QDate(2026, 3, 2), Currency::FromWhole(2), {}, description));
    }

    QString File() const { return JoinPath(Folder.path(), u"ABCEntries-WkLg.db"_s); }

    QString Reason() const
    {
        return u"Error #%1 (The database is locked by another program: %2)."_s
            .arg(StoreErrors::Locked)
            .arg(File());
    }

    void EditTheFirst()
    {
        Start();
        ClickRow(1);
        GoTo("txtDescription");
        Press(Qt::Key_A, Qt::ControlModifier);
        Type(u"typed with care"_s);
    }

    void ExpectEditsKept()
    {
        EXPECT_EQ(Text("txtDescription"), u"typed with care"_s);
        EXPECT_EQ(Text("txtCustomer"), u"0100"_s);
        EXPECT_EQ(Text("txtHours"), u"2.00"_s);
        EXPECT_FALSE(Any("cboCompany").isEnabled());
        EXPECT_EQ(Stored()[0].Description, u"first"_s);
    }
};

} // namespace

TEST_F(RefusedSave, OkTellsTheReasonOnceAndKeepsTheEdits)
{
    EditTheFirst();
    {
        OtherProgram other(File());
        other.Execute("BEGIN IMMEDIATE");
        ClickButton("cmdOK");
        EXPECT_THAT(Messages.Texts(), ElementsAre(Reason()));
        EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Exclamation);
        ExpectEditsKept();
    }
    ClickButton("cmdOK");
    EXPECT_EQ(Messages.Shown.size(), 1);
    EXPECT_EQ(Stored()[0].Description, u"typed with care"_s);
    EXPECT_TRUE(Any("cboCompany").isEnabled());
}

TEST_F(RefusedSave, LeavingTheWindowIsAbandonedAndAsksAgain)
{
    EditTheFirst();
    OtherProgram other(File());
    other.Execute("BEGIN IMMEDIATE");
    for (int attempt = 0; attempt < 2; ++attempt) {
        Messages.Shown.clear();
        Messages.Answers = {MessageAnswer::Yes};
        Press(Qt::Key_Escape);
        EXPECT_THAT(Messages.Texts(), ElementsAre(u"Do you want to save changes?"_s, Reason()));
        EXPECT_TRUE(Window().isVisible());
        ExpectEditsKept();
    }
}

TEST_F(RefusedSave, AnotherRowIsNotLoaded)
{
    EditTheFirst();
    OtherProgram other(File());
    other.Execute("BEGIN IMMEDIATE");
    Messages.Answers = {MessageAnswer::Yes};
    ClickRow(2);
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Do you want to save changes?"_s, Reason()));
    ExpectEditsKept();
}

TEST_F(RefusedSave, ADeletionKeepsTheEntryAndItsEdits)
{
    EditTheFirst();
    OtherProgram other(File());
    other.Execute("BEGIN IMMEDIATE");
    Messages.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Delete this Entry?"_s, Reason()));
    ExpectEditsKept();
    EXPECT_EQ(Stored().size(), 2U);
}
