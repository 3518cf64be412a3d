// Every way out of the lookup, for every kind, and what it leaves behind.

#include "tests/lookup/LookupFixture.h"

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

const QString Multipliers = LookupKinds::BillingRateMultiplier;
const QString Kinds[] = {u"Customer"_s, u"Project"_s, u"Activity"_s, Multipliers};

/// The codes that a lookup can write.
struct Codes
{
    QString LookupCustomer;
    QString LookupActivity;
    QString EntryCustomer;
    QString EntryProject;
    QString EntryActivity;
    QString EntryMultiplier;
    QString FilterCustomer;
    QString FilterProject;
    QString FilterActivity;

    bool operator==(const Codes &) const = default;
};

void PrintTo(const Codes &codes, std::ostream *out)
{
    for (const QString &code : {codes.LookupCustomer, codes.LookupActivity, codes.EntryCustomer,
             codes.EntryProject, codes.EntryActivity, codes.EntryMultiplier, codes.FilterCustomer,
             codes.FilterProject, codes.FilterActivity})
        *out << '"' << code.toStdString() << "\" ";
}

class WaysOut : public LookupFixture
{
protected:
    void SetUp() override
    {
        Start();
        ResetCodes();
    }

    void ResetCodes()
    {
        Entry.CustomerCode = u"0100"_s;
        Entry.ProjectCode = u"EP"_s;
        Entry.ActivityCode = u"EA"_s;
        Entry.MultiplierCode = u"EM"_s;
        Filter.FilterCustomer = u"0100"_s;
        Filter.FilterProject = u"FP"_s;
        Filter.FilterActivity = u"FA"_s;
        Lookup.LookupCustomerCode = u"LC"_s;
        Lookup.LookupActivityCode = u"LA"_s;
        Filter.FilterCodeReverted = true;
    }

    Codes Now() const
    {
        return {Lookup.LookupCustomerCode, Lookup.LookupActivityCode, Entry.CustomerCode,
            Entry.ProjectCode, Entry.ActivityCode, Entry.MultiplierCode, Filter.FilterCustomer,
            Filter.FilterProject, Filter.FilterActivity};
    }

    /// After the second row of the kind has been taken.
    Codes Taken(const QString &kind, bool fromFilter) const
    {
        Codes codes = Now();
        if (kind == "Customer"_L1) {
            codes.LookupCustomer = u"0200"_s;
            if (fromFilter)
                codes.FilterCustomer = u"0200"_s;
        } else if (kind == "Project"_L1) {
            codes.EntryProject = u"MOVE"_s;
            if (fromFilter)
                codes.FilterProject = u"MOVE"_s;
        } else if (kind == "Activity"_L1) {
            codes.LookupActivity = u"MEALS"_s;
            if (fromFilter)
                codes.FilterActivity = u"MEALS"_s;
        } else {
            codes.EntryMultiplier = u"2"_s;
        }
        return codes;
    }

    static Codes Cancelled(Codes codes, bool fromFilter)
    {
        codes.LookupCustomer = fromFilter ? codes.FilterCustomer : codes.EntryCustomer;
        codes.LookupActivity = codes.EntryActivity;
        return codes;
    }

    void Open(const QString &kind, bool fromFilter, const std::function<void()> &steps)
    {
        Lookup.LookupSelected = false;
        Lookup.LookupCancelled = false;
        if (fromFilter)
            LookUpFromFilter(kind, steps);
        else
            LookUp(kind, steps);
    }

    /// For each kind, opened by the entry window and by the filter.
    void ForEach(const std::function<void(const QString &kind, bool fromFilter)> &check)
    {
        for (const QString &kind : Kinds)
            for (const bool fromFilter : {false, true}) {
                SCOPED_TRACE(kind.toStdString() + (fromFilter ? " filter" : " entry"));
                ResetCodes();
                check(kind, fromFilter);
            }
    }
};

} // namespace

TEST_F(WaysOut, SelectTakesTheSelectedRecord)
{
    ForEach([this](const QString &kind, bool fromFilter) {
        const Codes expected = Taken(kind, fromFilter);
        Open(kind, fromFilter, [this] {
            Press("msgLookup", Qt::Key_Down);
            ClickButton("cmdSelect");
        });
        EXPECT_EQ(Now(), expected);
        EXPECT_TRUE(Lookup.LookupSelected);
        EXPECT_TRUE(Lookup.LookupRecordTaken);
        EXPECT_FALSE(Lookup.LookupCancelled);
        EXPECT_FALSE(Lookup.LookupPending);
        EXPECT_FALSE(Filter.FilterCodeReverted);
    });
}

TEST_F(WaysOut, SelectInAnEmptyListTakesNothing)
{
    Company.Customers.clear();
    Company.Projects.clear();
    Company.Activities.clear();
    Company.Multipliers.clear();
    Start();
    ForEach([this](const QString &kind, bool fromFilter) {
        const Codes before = Now();
        Lookup.LookupRecordTaken = false;
        Open(kind, fromFilter, [this] {
            EXPECT_EQ(Panel(1), u"Found 0 records"_s);
            ClickButton("cmdSelect");
        });
        EXPECT_EQ(Now(), before);
        EXPECT_TRUE(Lookup.LookupSelected);
        EXPECT_FALSE(Lookup.LookupRecordTaken);
    });
}

TEST_F(WaysOut, EnterOnTheSelectButtonIsAClick)
{
    const Codes expected = Taken(u"Customer"_s, false);
    Open(u"Customer"_s, false, [this] {
        Press("msgLookup", Qt::Key_Down);
        Press("cmdSelect", Qt::Key_Return);
    });
    EXPECT_EQ(Now(), expected);
}

TEST_F(WaysOut, EnterInTheGridTakesTheSelectedRecord)
{
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter})
        ForEach([&](const QString &kind, bool fromFilter) {
            const Codes expected = Taken(kind, fromFilter);
            Open(kind, fromFilter, [&] {
                Press("msgLookup", Qt::Key_Down);
                Press(key);
            });
            EXPECT_EQ(Now(), expected);
            EXPECT_TRUE(Lookup.LookupSelected);
            EXPECT_FALSE(Lookup.LookupPending);
            EXPECT_FALSE(Filter.FilterCodeReverted);
        });
}

TEST_F(WaysOut, ADoubleClickTakesItsRecordAndStaysPending)
{
    ForEach([this](const QString &kind, bool fromFilter) {
        const Codes expected = Taken(kind, fromFilter);
        Open(kind, fromFilter, [this] { DoubleClickRow(2); });
        EXPECT_EQ(Now(), expected);
        EXPECT_TRUE(Lookup.LookupSelected);
        EXPECT_TRUE(Lookup.LookupPending);
        EXPECT_FALSE(Filter.FilterCodeReverted);
    });
}

TEST_F(WaysOut, CancelWithoutAClickLeavesTheOpenersCodes)
{
    ForEach([this](const QString &kind, bool fromFilter) {
        const Codes expected = Cancelled(Now(), fromFilter);
        Open(kind, fromFilter, [this] {
            Press("msgLookup", Qt::Key_Down);
            ClickButton("cmdCancel");
        });
        EXPECT_EQ(Now(), expected);
        EXPECT_FALSE(Lookup.LookupSelected);
        EXPECT_TRUE(Lookup.LookupCancelled);
        EXPECT_TRUE(Lookup.LookupPending);
        EXPECT_TRUE(Filter.FilterCodeReverted);
    });
}

TEST_F(WaysOut, CancelAfterAClickKeepsAClickedProjectAndMultiplier)
{
    ForEach([this](const QString &kind, bool fromFilter) {
        const Codes clicked = Taken(kind, fromFilter);
        Open(kind, fromFilter, [&] {
            ClickRow(2);
            EXPECT_EQ(Now(), clicked);
            ClickButton("cmdCancel");
        });
        EXPECT_EQ(Now(), Cancelled(clicked, fromFilter));
        EXPECT_TRUE(Lookup.LookupCancelled);
    });
    ResetCodes();
    Open(u"Project"_s, false, [this] {
        ClickRow(2);
        Press(Qt::Key_Escape);
    });
    EXPECT_EQ(Entry.ProjectCode, u"MOVE"_s);
}

TEST_F(WaysOut, EscapeCancelsFromEveryControl)
{
    for (const char *control :
        {"txtLookup", "cboLookupBy", "msgLookup", "cmdSelect", "cmdCancel", "cmdHelp"}) {
        SCOPED_TRACE(control);
        Open(u"Customer"_s, false, [&] { Press(control, Qt::Key_Escape); });
        EXPECT_TRUE(Lookup.LookupCancelled);
        EXPECT_FALSE(Lookup.LookupSelected);
    }
}

TEST_F(WaysOut, ClosingByTheTitleBarIsCancel)
{
    const Codes expected = Cancelled(Now(), false);
    Open(u"Activity"_s, false, [this] { Window().close(); });
    EXPECT_EQ(Now(), expected);
    EXPECT_TRUE(Lookup.LookupCancelled);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(WaysOut, NoButtonIsPressedByEnterElsewhere)
{
    Open(u"Customer"_s, false, [this] {
        Press("txtLookup", Qt::Key_Return);
        EXPECT_TRUE(Window().isVisible());
        Press("cboLookupBy", Qt::Key_Enter);
        EXPECT_TRUE(Window().isVisible());
        Press(Qt::Key_Escape);
    });
    EXPECT_FALSE(Lookup.LookupSelected);
}
