// What the entry asks of the lookup, and what it makes of the answer.

#include "platform/clsRunTimeError.h"
#include "tests/entry/EntryRules.h"

using namespace Qt::StringLiterals;
using enum EntryControl;

namespace {

struct Kind
{
    size_t Number;
    QString Text;
    EntryControl Box;
    EntryControl Next;
};

class LookUp : public EntryRules
{
protected:
    const std::array<Kind, 4> Kinds
        = {{{LookupKinds::Customers, u"Client"_s, txtCustomer, txtProject},
            {LookupKinds::Projects, u"Job"_s, txtProject, txtActivity},
            {LookupKinds::Activities, u"Task"_s, txtActivity, txtHours},
            {LookupKinds::Multipliers, u"Billing Rate Multiplier"_s, txtMultiplierCode, txtHours}}};

    LookUp()
    {
        Company.Options.Customer_Term = u"Client"_s;
        Company.Options.Project_Term = u"Job"_s;
        Company.Options.Activity_Term = u"Task"_s;
        Company.Multipliers = {SampleMultiplier(u"02"_s, u"Overtime"_s, Money(1, 50))};
    }

    void StartWithCodes()
    {
        Start();
        EnterCodes(u"0100"_s, u"AUDIT"_s, u"CONS"_s);
        Screen.Focus.reset();
    }

    /// What a lookup does in which the record of that code is taken.
    void Take(const QString &kind, const QString &code)
    {
        if (kind == "Client"_L1)
            Lookup.LookupCustomerCode = code;
        else if (kind == "Job"_L1)
            Entry.ProjectCode = code;
        else if (kind == "Task"_L1)
            Lookup.LookupActivityCode = code;
        else
            Entry.MultiplierCode = code;
        Lookup.LookupRecordTaken = true;
        Lookup.LookupSelected = true;
    }

    void ExpectNothingLeftOver()
    {
        EXPECT_FALSE(Lookup.LookupStartPending);
        EXPECT_FALSE(Lookup.LookupPending);
        EXPECT_FALSE(Lookup.LookupSelected);
        EXPECT_FALSE(Lookup.LookupCancelled);
        EXPECT_FALSE(List.SuppressRowSelect);
    }
};

} // namespace

TEST_F(LookUp, AsksForTheKindInTheCompanysWordsWithTheTypedTextForF2Only)
{
    StartWithCodes();
    for (const Kind &kind : Kinds)
        for (const LookupStart start : {LookupStart::AtTheTop, LookupStart::AtTheText}) {
            SCOPED_TRACE(kind.Text.toStdString());
            Lookup.LookupFromFilter = true; // however it was left
            Screen[kind.Box].Text = u"TYPED"_s;
            bool asked = false;
            Rules().ShowLookup = [&] {
                asked = true;
                EXPECT_EQ(Lookup.LookupKind, kind.Text);
                EXPECT_FALSE(Lookup.LookupFromFilter);
                EXPECT_TRUE(Lookup.LookupPending);
                EXPECT_TRUE(List.SuppressRowSelect);
                EXPECT_EQ(Lookup.LookupStartPending, start == LookupStart::AtTheText);
                if (Lookup.LookupStartPending) {
                    EXPECT_EQ(Lookup.LookupStartText, u"TYPED"_s);
                }
                Lookup.LookupCancelled = true;
            };
            EXPECT_FALSE(Rules().LookUp(kind.Number, start));
            EXPECT_TRUE(asked);
            ExpectNothingLeftOver();
            EXPECT_EQ(Lookup.LookupKind, QString());
            EXPECT_EQ(Focused(), kind.Box);
            EXPECT_TRUE(SelectsText());
            EXPECT_EQ(Text(kind.Box), u"TYPED"_s);
        }
}

TEST_F(LookUp, TakesTheCodeIntoRecordAndBoxAndMovesOn)
{
    const std::array codes = {u"0200"_s, u"MOVE"_s, u"TRAIN"_s, u"02"_s};
    for (const Kind &kind : Kinds) {
        SCOPED_TRACE(kind.Text.toStdString());
        StartWithCodes();
        const QString code = codes.at(kind.Number);
        Rules().Changed = false;
        Rules().ShowLookup = [&] { Take(kind.Text, code); };
        EXPECT_TRUE(Rules().LookUp(kind.Number, LookupStart::AtTheTop));
        EXPECT_EQ(Text(kind.Box), code);
        EXPECT_EQ(Focused(), kind.Next);
        EXPECT_TRUE(Rules().Changed);
        ExpectNothingLeftOver();
        const std::array entry
            = {Entry.CustomerCode, Entry.ProjectCode, Entry.ActivityCode, Entry.MultiplierCode};
        EXPECT_EQ(entry.at(kind.Number), code);
        EXPECT_EQ(Entry.ProjectCode,
            kind.Number == LookupKinds::Customers      ? QString()
                : kind.Number == LookupKinds::Projects ? u"MOVE"_s
                                                       : u"AUDIT"_s);
    }
}

TEST_F(LookUp, AProjectWithoutACustomerAsksNothing)
{
    Start();
    Rules().ShowLookup = [] { FAIL(); };
    EXPECT_FALSE(Rules().LookUp(LookupKinds::Projects, LookupStart::AtTheTop));
    EXPECT_FALSE(Screen.Focus && Focused() == txtProject);
}

TEST_F(LookUp, AnErrorLeavesNoRequestBehind)
{
    StartWithCodes();
    Rules().ShowLookup = [] { throw clsRunTimeError(5, u"Store"_s, u"It cannot be read"_s); };
    EXPECT_THROW(Rules().LookUp(LookupKinds::Customers, LookupStart::AtTheText), clsRunTimeError);
    ExpectNothingLeftOver();
    EXPECT_EQ(Entry.CustomerCode, u"0100"_s);
}

TEST_F(LookUp, AfterACustomerTheFocusOfAStoredEntryMovesOnToo)
{
    StartWith({FullEntry()});
    Rules().ShowLookup = [&] { Take(u"Client"_s, u"0200"_s); };
    EXPECT_TRUE(Rules().LookUp(LookupKinds::Customers, LookupStart::AtTheTop));
    EXPECT_EQ(Text(txtCustomer), u"0200"_s) << "what is stored is not read anew";
    EXPECT_EQ(Focused(), txtProject);
}
