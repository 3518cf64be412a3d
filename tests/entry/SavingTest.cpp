// Saving, undoing and deleting the entry, also when the store refuses.

#include "tests/entry/EntryRules.h"

#include "store/FieldText.h"
#include "store/StoreErrors.h"
#include "tests/entry/OtherProgram.h"
#include "tests/support/Raised.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using enum EntryControl;

namespace {

EntryRecord Described(const QString &description)
{
    EntryRecord record = FullEntry();
    record.On_Hold = u"N"_s;
    record.Reimburse = u"N"_s;
    record.Description = description;
    return record;
}

class Saving : public EntryRules
{
protected:
    void StartWithThree()
    {
        StartWith({Described(u"first"_s), Described(u"second"_s), Described(u"third"_s)});
    }

    QStringList Descriptions() const
    {
        QStringList texts;
        for (const EntryRecord &record : Stored())
            texts.append(record.Description);
        return texts;
    }

    void Describe(const QString &text)
    {
        Screen[txtDescription].Text = text;
        Rules().TakeDescription();
    }

    void EnterNew(const QString &description)
    {
        Rules().ClearEntry();
        EnterCodes(u"0100"_s, u""_s, u"CONS"_s);
        EnterHours(u"2"_s);
        Describe(description);
    }

    /// What a user sees of the entry in the editor.
    QStringList Shown() const
    {
        return {Text(txtCustomer), Text(txtActivity), Text(txtHours), Text(txtDescription)};
    }
};

const QString SaveChanges = u"Do you want to save changes?"_s;

} // namespace

TEST_F(Saving, ANewEntryIsAppendedWithItsNineteenFields)
{
    StartWithThree();
    EnterNew(u"fourth"_s);
    Entry.ExpMarkupPercent = Money(7);
    Entry.ExpMarkupAmount = Money(8);
    EnterMultiplier(u"05"_s);
    Rules().SaveEntry();
    EXPECT_TRUE(Rules().SaveSucceeded);
    EXPECT_FALSE(Rules().Changed);
    EXPECT_EQ(Reloads, 1);
    EXPECT_THAT(Messages.Texts(), IsEmpty());

    EntryRecord expected;
    expected.Customer_Number = u"0100"_s;
    expected.Activity_Number = u"CONS"_s;
    expected.Date = WallClock(QDate(2026, 3, 9));
    expected.Billing_Status = u"1"_s;
    expected.On_Hold = u"N"_s;
    expected.Billing_Option = u"6"_s;
    expected.Multiplier_Number = u"05"_s;
    expected.Rate_Overridden = u"N"_s;
    expected.Reimburse = u"N"_s;
    expected.Hours = Money(2);
    expected.Rate = Money(90);
    expected.Amount = Money(225);
    expected.Multiplier_Factor = Money(1, 25);
    expected.Exp_Markup_Percent = Money(7);
    expected.Exp_Markup_Amount = Money(8);
    expected.Description = u"fourth"_s;
    ASSERT_EQ(Stored().size(), 4U);
    EXPECT_EQ(Stored()[3], expected);
}

TEST_F(Saving, AStoredEntryIsReplacedInItsPlace)
{
    StartWithThree();
    Rules().LoadEntry(1);
    Describe(u"changed"_s);
    EnterHours(u"2"_s);
    Data().Entries.MoveFirst(); // the cursor went elsewhere meanwhile
    Rules().SaveEntry();
    EXPECT_THAT(Descriptions(), ElementsAre(u"first"_s, u"changed"_s, u"third"_s));
    EntryRecord expected = Described(u"changed"_s);
    expected.Hours = Money(2);
    expected.Amount = Money(250);
    EXPECT_EQ(Stored()[1], expected);
    EXPECT_FALSE(Rules().Changed);
    EXPECT_EQ(Reloads, 1);
}

TEST_F(Saving, TheAmountIsStoredWithItsFourDecimals)
{
    StartWith({Described(u"first"_s)});
    EnterRate(u"33.333"_s);
    EnterHours(u".25"_s);
    EXPECT_EQ(Text(txtAmount), u"8.33"_s);
    Rules().SaveEntry();
    EXPECT_EQ(Stored()[0].Amount, Currency::FromScaled(83332)); // 8.33325 to the even one
}

TEST_F(Saving, AnUnchangedEntryIsNotWrittenAndTheListIsReloaded)
{
    EntryRecord invalid = Described(u"first"_s);
    invalid.Hours = {};
    invalid.Amount = Money(5);
    StartWith({invalid});
    Rules().SaveEntry();
    EXPECT_TRUE(Rules().SaveSucceeded);
    EXPECT_EQ(Reloads, 1);
    EXPECT_THAT(Messages.Texts(), IsEmpty()); // not even checked
    EXPECT_EQ(Stored()[0], invalid);
}

TEST_F(Saving, AnEntryThatFailsItsCheckKeepsItsEditsAndTheList)
{
    StartWithThree();
    Describe(u"changed"_s);
    Type(txtHours, u"0"_s);
    Rules().SaveEntry();
    EXPECT_FALSE(Rules().SaveSucceeded);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Reloads, 0);
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Invalid Hours."_s));
    EXPECT_EQ(Entry.Description, u"changed"_s);
    EXPECT_THAT(Descriptions(), ElementsAre(u"first"_s, u"second"_s, u"third"_s));
}

TEST_F(Saving, ABillableExpenseOfNothingIsNotSaved)
{
    StartWithThree();
    Rules().ClearEntry();
    EnterCodes(u"0100"_s, u""_s, u"MILES"_s);
    Rules().SaveEntry();
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Invalid Units."_s));
    EXPECT_EQ(Stored().size(), 3U);
    EXPECT_EQ(Reloads, 0);
}

TEST_F(Saving, AfterARefusalTheNextSaveSucceeds)
{
    StartWithThree();
    Type(txtHours, u"0"_s);
    Rules().SaveEntry();
    ASSERT_FALSE(Rules().SaveSucceeded);
    EnterHours(u"4"_s);
    Rules().SaveEntry();
    EXPECT_TRUE(Rules().SaveSucceeded);
    EXPECT_EQ(Stored()[0].Hours, Money(4));
}

TEST_F(Saving, WhileTheCompanyChangesTheListIsNotReloaded)
{
    StartWithThree();
    List.CompanyChangeInProgress = true;
    Describe(u"changed"_s);
    Rules().SaveEntry();
    EXPECT_TRUE(Rules().SaveSucceeded);
    EXPECT_EQ(Reloads, 0);
    EXPECT_EQ(Stored()[0].Description, u"changed"_s);
}

TEST_F(Saving, ASaveThatTheStoreRefusesKeepsTheEdits)
{
    for (const bool isNew : {false, true}) {
        SCOPED_TRACE(isNew ? "new" : "stored");
        StartWithThree();
        if (isNew)
            EnterNew(u"typed with care"_s);
        else
            Describe(u"typed with care"_s);
        const QStringList shown = Shown();
        {
            OtherProgram other(FileOfEntries());
            other.Execute("BEGIN EXCLUSIVE");
            const Raised raised = RaisedBy([&] { Rules().SaveEntry(); });
            EXPECT_EQ(raised.Number, StoreErrors::Locked);
            EXPECT_TRUE(raised.Names(FileOfEntries()));
            EXPECT_FALSE(Rules().SaveSucceeded);
            EXPECT_TRUE(Rules().Changed);
            EXPECT_EQ(Rules().NewEntry, isNew);
            EXPECT_EQ(Shown(), shown);
            EXPECT_EQ(Reloads, 0);
            other.Execute("ROLLBACK");
        }
        EXPECT_THAT(Descriptions(), ElementsAre(u"first"_s, u"second"_s, u"third"_s));
        Rules().SaveEntry();
        EXPECT_TRUE(Rules().SaveSucceeded);
        EXPECT_EQ(Descriptions()[isNew ? 3 : 0], u"typed with care"_s);
        EXPECT_EQ(Stored().size(), isNew ? 4U : 3U);
    }
}

TEST_F(Saving, ASaveOverAnotherProgramsChangeIsRefused)
{
    StartWithThree();
    Describe(u"mine"_s);
    OtherProgram(FileOfEntries())
        .Execute(
            R"(UPDATE "ABCEntries-WkLg" SET Description = 'theirs' WHERE Description = 'first')");
    EXPECT_EQ(RaisedBy([&] { Rules().SaveEntry(); }).Number, StoreErrors::ChangedOutside);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Entry.Description, u"mine"_s);
    EXPECT_THAT(Descriptions(), ElementsAre(u"theirs"_s, u"second"_s, u"third"_s));
}

TEST_F(Saving, UndoOnlyReloadsTheList)
{
    StartWithThree();
    Describe(u"changed"_s);
    Rules().UndoEntry();
    EXPECT_EQ(Reloads, 1);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_THAT(Descriptions(), ElementsAre(u"first"_s, u"second"_s, u"third"_s));
}

TEST_F(Saving, DeletingAsksWithNoAsTheDefault)
{
    StartWithThree();
    Rules().DeleteEntry(); // the recorded box answers with its preset
    ASSERT_EQ(Messages.Shown.size(), 1);
    EXPECT_EQ(Messages.Shown[0].Text, u"Delete this Entry?"_s);
    EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Question);
    EXPECT_EQ(Messages.Shown[0].Buttons, MessageButtons::YesNo);
    EXPECT_EQ(Messages.Shown[0].Preset, MessageAnswer::No);
    EXPECT_EQ(Stored().size(), 3U);
    EXPECT_EQ(Reloads, 0);
    EXPECT_TRUE(Rules().EntryLoaded);
}

TEST_F(Saving, DeletingANewEntryOnlyReloadsTheList)
{
    StartWithThree();
    EnterNew(u"fourth"_s);
    Rules().DeleteEntry();
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_EQ(Reloads, 1);
    EXPECT_EQ(Stored().size(), 3U);
}

TEST_F(Saving, TheDeletedEntryIsTheOneShownWhateverMovedTheCursor)
{
    const auto moves = std::vector<std::function<void()>>{
        [this] { Data().Entries.MoveFirst(); },
        [this] { Data().Entries.MoveCursor(); },
        [this] { Data().Entries.Find(18, u"third"_s); },
        [this] {
            while (!Data().Entries.IsEndOfTable())
                Data().Entries.MoveNext();
        },
    };
    for (const auto &move : moves) {
        StartWithThree();
        Rules().LoadEntry(1);
        move();
        Messages.Answers = {MessageAnswer::Yes};
        Rules().DeleteEntry();
        EXPECT_THAT(Descriptions(), ElementsAre(u"first"_s, u"third"_s));
    }
}

TEST_F(Saving, TheReloadAfterADeletionKnowsOfIt)
{
    StartWithThree();
    bool deleting = false;
    Rules().ReloadList = [&] { deleting = List.DeletingEntry; };
    Messages.Answers = {MessageAnswer::Yes};
    Rules().DeleteEntry();
    EXPECT_TRUE(deleting);
    EXPECT_FALSE(List.DeletingEntry);
}

TEST_F(Saving, ADeletionThatTheStoreRefusesLeavesTheEntryShown)
{
    StartWithThree();
    Describe(u"changed"_s);
    OtherProgram other(FileOfEntries());
    other.Execute("BEGIN EXCLUSIVE");
    Messages.Answers = {MessageAnswer::Yes};
    EXPECT_EQ(RaisedBy([&] { Rules().DeleteEntry(); }).Number, StoreErrors::Locked);
    other.Execute("ROLLBACK");
    EXPECT_TRUE(Rules().EntryLoaded);
    EXPECT_TRUE(Rules().Changed);
    EXPECT_FALSE(List.DeletingEntry);
    EXPECT_EQ(Entry.Description, u"changed"_s);
    EXPECT_EQ(Reloads, 0);
    EXPECT_EQ(Stored().size(), 3U);
}

TEST_F(Saving, AnUnchangedEntryMayBeLeftWithoutAQuestion)
{
    StartWithThree();
    EXPECT_TRUE(Rules().MayLeaveEntry());
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_EQ(Reloads, 0);
}

TEST_F(Saving, TheSaveQuestionSavesDropsOrStays)
{
    struct Row
    {
        MessageAnswer Answer;
        bool MayLeave, Saves;
    };
    for (const Row &row : {Row{MessageAnswer::Yes, true, true}, Row{MessageAnswer::No, true, false},
             Row{MessageAnswer::Cancel, false, false}}) {
        SCOPED_TRACE(static_cast<int>(row.Answer));
        StartWithThree();
        Describe(u"changed"_s);
        Messages.Shown.clear();
        Messages.Answers = {row.Answer};
        EXPECT_EQ(Rules().MayLeaveEntry(), row.MayLeave);
        EXPECT_THAT(Messages.Texts(), ElementsAre(SaveChanges));
        EXPECT_EQ(Messages.Shown[0].Icon, MessageIcon::Question);
        EXPECT_EQ(Messages.Shown[0].Buttons, MessageButtons::YesNoCancel);
        EXPECT_EQ(Rules().Changed, !row.Saves);
        EXPECT_EQ(Stored()[0].Description, row.Saves ? u"changed"_s : u"first"_s);
    }
}

TEST_F(Saving, TheSaveQuestionTakesInTheBoxWithTheFocusFirst)
{
    StartWithThree();
    Describe(u"changed"_s);
    Rules().TakeFocusedBox = [this] {
        EnterHours(u"6"_s);
        return true;
    };
    Messages.Answers = {MessageAnswer::Yes};
    EXPECT_TRUE(Rules().MayLeaveEntry());
    EXPECT_EQ(Stored()[0].Hours, Money(6));
}

TEST_F(Saving, ARefusedCodeInTheBoxWithTheFocusAbandonsTheAction)
{
    StartWithThree();
    Describe(u"changed"_s);
    Rules().TakeFocusedBox = [] { return false; };
    Messages.Answers = {MessageAnswer::Yes};
    EXPECT_FALSE(Rules().MayLeaveEntry());
    EXPECT_TRUE(Rules().Changed);
    EXPECT_EQ(Reloads, 0);
    EXPECT_EQ(Stored()[0].Description, u"first"_s);
}

TEST_F(Saving, ARefusedSaveAbandonsTheAction)
{
    StartWithThree();
    Type(txtHours, u"0"_s);
    Messages.Answers = {MessageAnswer::Yes};
    EXPECT_FALSE(Rules().MayLeaveEntry());
    EXPECT_THAT(Messages.Texts(), ElementsAre(SaveChanges, u"Invalid Hours."_s));
    EXPECT_TRUE(Rules().Changed);
}

TEST_F(Saving, AReloadThatFailsAfterADeletionLeadsToNoSecondOne)
{
    StartWithThree();
    Rules().ReloadList = [] { RaiseStoreError(StoreErrors::Locked, u"busy"_s); };
    Messages.Answers = {MessageAnswer::Yes, MessageAnswer::Yes};
    EXPECT_EQ(RaisedBy([&] { Rules().DeleteEntry(); }).Number, StoreErrors::Locked);
    EXPECT_FALSE(List.DeletingEntry);
    EXPECT_FALSE(Rules().EntryLoaded);
    EXPECT_EQ(RaisedBy([&] { Rules().DeleteEntry(); }).Number, StoreErrors::Locked);
    EXPECT_EQ(Messages.Shown.size(), 1); // what is still shown is not stored any more
    EXPECT_THAT(Descriptions(), ElementsAre(u"second"_s, u"third"_s));

    Describe(u"once more"_s);
    EXPECT_EQ(RaisedBy([&] { Rules().SaveEntry(); }).Number, StoreErrors::Locked);
    EXPECT_THAT(Descriptions(), ElementsAre(u"second"_s, u"third"_s, u"once more"_s));
}

TEST_F(Saving, AReloadThatFailsAfterASaveLeadsToNoSecondRecord)
{
    StartWithThree();
    EnterNew(u"fourth"_s);
    Rules().ReloadList = [] { RaiseStoreError(StoreErrors::Locked, u"busy"_s); };
    EXPECT_EQ(RaisedBy([&] { Rules().SaveEntry(); }).Number, StoreErrors::Locked);
    EXPECT_TRUE(Rules().SaveSucceeded);
    EXPECT_FALSE(Rules().Changed);
    for (const QString &text : {u"corrected"_s, u"corrected again"_s}) {
        Describe(text);
        EXPECT_EQ(RaisedBy([&] { Rules().SaveEntry(); }).Number, StoreErrors::Locked);
        EXPECT_THAT(Descriptions(), ElementsAre(u"first"_s, u"second"_s, u"third"_s, text));
    }
}

TEST_F(Saving, WhatAnotherProgramMovedIsNeitherOverwrittenNorDeletedByMistake)
{
    StartWithThree();
    Rules().LoadEntry(1);
    Describe(u"mine"_s);
    OtherProgram other(FileOfEntries());
    other.Execute(R"(DELETE FROM "ABCEntries-WkLg" WHERE Description = 'first')");
    other.Execute(
        R"(UPDATE "ABCEntries-WkLg" SET Description = 'theirs' WHERE Description = 'second')");
    Messages.Answers = {MessageAnswer::Yes, MessageAnswer::Yes};
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(RaisedBy([&] { Rules().SaveEntry(); }).Number, StoreErrors::ChangedOutside);
        EXPECT_TRUE(Rules().Changed);
        EXPECT_EQ(RaisedBy([&] { Rules().DeleteEntry(); }).Number, StoreErrors::ChangedOutside);
        EXPECT_EQ(Entry.Description, u"mine"_s);
        EXPECT_THAT(Descriptions(), ElementsAre(u"theirs"_s, u"third"_s));
    }
}

TEST_F(Saving, AnEntryThatAnotherProgramTookAwayIsNotWritten)
{
    StartWithThree();
    Rules().LoadEntry(2);
    Describe(u"mine"_s);
    OtherProgram(FileOfEntries()).Execute(R"(DELETE FROM "ABCEntries-WkLg")");
    for (int attempt = 0; attempt < 2; ++attempt) {
        EXPECT_EQ(RaisedBy([&] { Rules().SaveEntry(); }).Number, StoreErrors::ChangedOutside);
        EXPECT_TRUE(Rules().Changed);
        EXPECT_EQ(Entry.Description, u"mine"_s);
    }
    EXPECT_TRUE(Stored().empty());
}
