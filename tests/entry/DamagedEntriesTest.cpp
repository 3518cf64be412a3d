// Entries that are not as they were saved are told with their record, and stay in the list.

#include "tests/entry/EntryWindow.h"

#include "tests/entry/OtherProgram.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class DamagedEntries : public EntryWindow
{
protected:
    DamagedEntries()
    {
        for (int i = 1; i <= 12; ++i)
            Company.Entries->push_back(SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s,
                QDate(2026, 3, i), Currency::FromWhole(i), {}, u"entry %1"_s.arg(i)));
    }

    void Damage(const char *where)
    {
        OtherProgram(Folder.path() + u"/ABCEntries-WkLg.db"_s)
            .Execute(qPrintable(u"UPDATE \"ABCEntries-WkLg\" SET Description = Description || '!' "
                                "WHERE "_s
                + QString::fromLatin1(where)));
    }
    void StartDamaged(const char *where)
    {
        BuildSampleCompanies(Folder.path(), {Company});
        Damage(where);
        Program = std::make_unique<clsProgram>(
            Folder.path(), ProgramServices{Messages, Keys, Process, Clock, Settings, Browser});
        Program->StartUp();
        ASSERT_TRUE(ShowActive(Window()));
    }
};

const QString Advice
    = u"\nThe disk may have damaged it, or another program has changed it. Correct and save, or "
      "delete, what is wrong."_s;

} // namespace

TEST_F(DamagedEntries, AreToldWithTheirRecordAndCanBeMended)
{
    StartDamaged("rowid = 2");
    EXPECT_THAT(Messages.Texts(),
        ElementsAre(u"This entry is not as it was saved:\n\n"
                    "Record 2: 03/02/2026, 0100, AUDIT, CONS, 2.00, entry 2!\n"_s
            + Advice));
    EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(Grid().Rows(), 13);

    // It is told once, and no longer when it has been saved.
    ClickButton("cmdUndo");
    EXPECT_EQ(Messages.Shown.size(), 1);
    ClickRow(2);
    GoTo("txtDescription");
    Type(u"as it should be"_s);
    ClickButton("cmdOK");
    EXPECT_EQ(Messages.Shown.size(), 1);
    Program.reset();
    Program = std::make_unique<clsProgram>(
        Folder.path(), ProgramServices{Messages, Keys, Process, Clock, Settings, Browser});
    Program->StartUp();
    EXPECT_EQ(Messages.Shown.size(), 1);
}

TEST_F(DamagedEntries, AreToldWhenTheyAreFoundLater)
{
    Start();
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    Damage("rowid = 12");
    ClickButton("cmdUndo");
    ASSERT_EQ(Messages.Shown.size(), 1);
    EXPECT_TRUE(Messages.Shown[0].Text.contains(u"Record 12: 03/12/2026"_s));
    ClickRow(12);
    Messages.Answers = {MessageAnswer::Yes};
    ClickButton("cmdDel");
    EXPECT_EQ(Messages.Shown.size(), 2); // the question alone
    EXPECT_EQ(Stored().size(), 11U);
}

TEST_F(DamagedEntries, OfWhichThereAreManyAreCounted)
{
    StartDamaged("rowid > 0");
    ASSERT_EQ(Messages.Shown.size(), 1);
    const QString text = Messages.Shown[0].Text;
    EXPECT_TRUE(text.startsWith(u"12 entries are not as they were saved:\n\nRecord 1: "_s));
    EXPECT_TRUE(text.contains(u"entry 10!\nand 2 more\n"_s));
}
