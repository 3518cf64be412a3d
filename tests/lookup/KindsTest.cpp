// What each of the four lists shows, in which order, and how it looks.

#include "store/FieldText.h"
#include "store/PadKey.h"
#include "tests/lookup/LookupFixture.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString Multipliers = LookupKinds::BillingRateMultiplier;

class Kinds : public LookupFixture
{
protected:
    Kinds()
    {
        Company.Options.Customer_Term = u"Client"_s;
        Company.Options.Project_Term = u"Job"_s;
        Company.Options.Activity_Term = u"Task"_s;
        Company.Customers = {SampleCustomer(u"0300"_s, u"alpha"_s),
            SampleCustomer(u"0100"_s, u"Zeta"_s), SampleCustomer(u"0200"_s, u"Beta"_s)};
        Company.Projects = {SampleProject(u"0100"_s, u"MOVE"_s, u"Archive"_s),
            SampleProject(u"0200"_s, u"AUDIT"_s, u"Mill"_s),
            SampleProject(u"0100"_s, u"AUDIT"_s, u"Yearly audit"_s),
            SampleProject(u"0100"_s, u"B2"_s, u"Move"_s)};
        Company.Activities = {SampleActivity(u"TRAIN"_s, u"Training"_s, {}, u"1"_s),
            SampleActivity(u"CONS"_s, u"Visit"_s, {}, u"3"_s),
            SampleActivity(u"MILES"_s, u"Mileage"_s, {}, u"2"_s),
            SampleActivity(u"ODD"_s, u"Other"_s, {}, u"9"_s)};
        Company.Multipliers = {SampleMultiplier(u"9"_s, u"Standard"_s, Currency::FromWhole(1)),
            SampleMultiplier(u"1"_s, u"Sunday"_s, Currency::FromWhole(10)),
            SampleMultiplier(u"2"_s, u"overtime"_s, Currency::FromScaled(5000)),
            SampleMultiplier(u"3"_s, u"Credit"_s, Currency::FromScaled(-12500))};
    }

    QStringList Items()
    {
        QStringList items;
        for (int i = 0; i < By().count(); ++i)
            items.append(By().itemText(i));
        return items;
    }
};

} // namespace

TEST_F(Kinds, CustomersByCodeAndByName)
{
    Start();
    LookUp(u"Client"_s, [this] {
        EXPECT_EQ(Window().windowTitle(), u"Client Lookup"_s);
        EXPECT_THAT(Items(), ElementsAre(u"Client"_s, u"Name"_s));
        EXPECT_EQ(By().currentText(), u"Client"_s);
        EXPECT_THAT(Headers(), ElementsAre(u"UniqueID Hidden"_s, u"Client"_s, u"Name"_s));
        EXPECT_THAT(Column(1), ElementsAre(u"0100"_s, u"0200"_s, u"0300"_s));
        EXPECT_THAT(Column(2), ElementsAre(u"Zeta"_s, u"Beta"_s, u"alpha"_s));
        ChooseBy(u"Name"_s);
        EXPECT_THAT(Column(2), ElementsAre(u"alpha"_s, u"Beta"_s, u"Zeta"_s));
        EXPECT_THAT(Column(0), ElementsAre(u"0"_s, u"1"_s, u"2"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, ProjectsAreThoseOfTheEntrysCustomer)
{
    Start();
    Entry.CustomerCode = u"0100"_s;
    Filter.FilterCustomer = u"0200"_s;
    LookUp(u"Job"_s, [this] {
        EXPECT_EQ(Window().windowTitle(), u"Job Lookup"_s);
        EXPECT_THAT(Items(), ElementsAre(u"Job"_s, u"Name"_s));
        EXPECT_THAT(Headers(), ElementsAre(u"UniqueID Hidden"_s, u"Job"_s, u"Name"_s));
        EXPECT_THAT(Column(1), ElementsAre(u"AUDIT"_s, u"B2"_s, u"MOVE"_s));
        EXPECT_EQ(Panel(1), u"Found 3 records"_s);
        ChooseBy(u"Name"_s);
        EXPECT_THAT(Column(2), ElementsAre(u"Archive"_s, u"Move"_s, u"Yearly audit"_s));
        ChooseBy(u"Job"_s);
        EXPECT_THAT(Column(1), ElementsAre(u"AUDIT"_s, u"B2"_s, u"MOVE"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, ProjectsOpenedByTheFilterAreThoseOfItsCustomer)
{
    Start();
    Entry.CustomerCode = u"0100"_s;
    Filter.FilterCustomer = u"0200"_s;
    LookUpFromFilter(u"Job"_s, [this] {
        EXPECT_EQ(Module->LookupCustomerFilter, u"0200"_s);
        EXPECT_THAT(Column(2), ElementsAre(u"Mill"_s));
        EXPECT_EQ(Panel(1), u"Found 1 record"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, ProjectsOfACustomerInTheMiddleOfTheTableAreFoundInBothOrders)
{
    Company.Projects.push_back(SampleProject(u"0050"_s, u"X"_s, u"Zebra"_s));
    Start();
    Entry.CustomerCode = u"0100"_s;
    Lookup.LookupByChoice[LookupKinds::Projects] = u"Name"_s;
    LookUp(u"Job"_s, [this] {
        EXPECT_THAT(Column(2), ElementsAre(u"Archive"_s, u"Move"_s, u"Yearly audit"_s));
        EXPECT_THAT(Column(0), ElementsAre(u"1"_s, u"2"_s, u"3"_s));
        ChooseBy(u"Job"_s);
        EXPECT_THAT(Column(1), ElementsAre(u"AUDIT"_s, u"B2"_s, u"MOVE"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, TheFirstProjectOfACustomerIsFoundAnewInEachOrder)
{
    // Keys of codes that differ in case only are mixed by code and apart by name.
    Company.Projects = {SampleProject(u"ab"_s, u"P1"_s, u"Small"_s),
        SampleProject(u"AB"_s, u"P2"_s, u"Capital"_s),
        SampleProject(u"AB"_s, u"P3"_s, u"Capital"_s)};
    Start();
    Entry.CustomerCode = u"ab"_s;
    LookUp(u"Job"_s, [this] {
        EXPECT_THAT(Column(0), ElementsAre(u"0"_s));
        ChooseBy(u"Name"_s);
        EXPECT_THAT(Column(0), ElementsAre(u"2"_s));
        EXPECT_THAT(Column(1), ElementsAre(u"P1"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, ActivitiesByCodeDescriptionAndBillingStatus)
{
    Start();
    LookUp(u"Task"_s, [this] {
        EXPECT_THAT(Items(), ElementsAre(u"Task"_s, u"Description"_s, u"Dflt Billing Status"_s));
        EXPECT_THAT(Headers(),
            ElementsAre(
                u"UniqueID Hidden"_s, u"Task"_s, u"Description"_s, u"Dflt Billing Status"_s));
        EXPECT_THAT(Column(1), ElementsAre(u"CONS"_s, u"MILES"_s, u"ODD"_s, u"TRAIN"_s));
        EXPECT_THAT(
            Column(3), ElementsAre(u"Do Not Bill"_s, u"No Charge"_s, QString(), u"Billable"_s));
        ChooseBy(u"Description"_s);
        EXPECT_THAT(Column(2), ElementsAre(u"Mileage"_s, u"Other"_s, u"Training"_s, u"Visit"_s));
        ChooseBy(u"Dflt Billing Status"_s);
        EXPECT_THAT(Column(1), ElementsAre(u"TRAIN"_s, u"MILES"_s, u"CONS"_s, u"ODD"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, MultipliersByCodeDescriptionAndFactorAsANumber)
{
    Start();
    LookUp(Multipliers, [this] {
        EXPECT_EQ(Window().windowTitle(), u"Billing Rate Multiplier Lookup"_s);
        EXPECT_THAT(
            Items(), ElementsAre(u"Multiplier Code"_s, u"Description"_s, u"Multiplier Factor"_s));
        EXPECT_THAT(Headers(),
            ElementsAre(u"UniqueID Hidden"_s, u"Multiplier Code"_s, u"Description"_s,
                u"Multiplier Factor"_s));
        EXPECT_THAT(Column(1), ElementsAre(u"1"_s, u"2"_s, u"3"_s, u"9"_s));
        EXPECT_THAT(Column(3), ElementsAre(u"10.0000"_s, u"0.5000"_s, u"-1.2500"_s, u"1.0000"_s));
        ChooseBy(u"Description"_s);
        EXPECT_THAT(Column(2), ElementsAre(u"Credit"_s, u"overtime"_s, u"Standard"_s, u"Sunday"_s));
        ChooseBy(u"Multiplier Factor"_s);
        EXPECT_THAT(Column(3), ElementsAre(u"-1.2500"_s, u"0.5000"_s, u"1.0000"_s, u"10.0000"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, RecordsOfEqualNamesStandInTheOrderOfTheirKeys)
{
    Company.Customers = {SampleCustomer(u"0300"_s, u"Same"_s), SampleCustomer(u"0100"_s, u"Same"_s),
        SampleCustomer(u"0200"_s, u"Same"_s)};
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    LookUp(u"Client"_s, [this] {
        EXPECT_THAT(Column(1), ElementsAre(u"0100"_s, u"0200"_s, u"0300"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, ColumnsHaveFixedWidthsAndTheFactorStandsOnTheRight)
{
    struct Case
    {
        QString Kind;
        std::vector<int> Twips;
    };
    Start();
    Entry.CustomerCode = u"0100"_s;
    for (const Case &c : {Case{u"Client"_s, {1710, 6360}}, Case{u"Job"_s, {1710, 6360}},
             Case{u"Task"_s, {1710, 3845, 2535}}, Case{Multipliers, {1710, 3845, 2535}}}) {
        LookUp(c.Kind, [&] {
            EXPECT_TRUE(Grid().isColumnHidden(0));
            for (size_t i = 0; i < c.Twips.size(); ++i)
                EXPECT_EQ(Grid().columnWidth(static_cast<int>(i) + 1),
                    qRound(c.Twips[i] * Grid().logicalDpiX() / 1440.0))
                    << c.Kind.toStdString();
            const int last = Grid().Cols() - 1;
            const QVariant alignment = Grid().model()->index(0, last).data(Qt::TextAlignmentRole);
            EXPECT_EQ(alignment.value<Qt::Alignment>(),
                (c.Kind == Multipliers ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
            Press(Qt::Key_Escape);
        });
    }
}

TEST_F(Kinds, TheStatusBarShowsCountEmployeeCompanyAndTheEntrysDate)
{
    Entry.Date = {};
    Start();
    Entry.Date = WallClock(QDate(2025, 12, 1));
    LookUp(u"Client"_s, [this] {
        EXPECT_EQ(Panel(1), u"Found 3 records"_s);
        EXPECT_EQ(Panel(2), u"JRD"_s);
        EXPECT_EQ(Panel(3), u"ABC"_s);
        EXPECT_EQ(Panel(4), u"12/01/2025"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, TheChoiceOfEachKindSurvivesClosing)
{
    Start();
    Entry.CustomerCode = u"0100"_s;
    for (const auto &[kind, choice] : {std::pair(u"Client"_s, u"Name"_s),
             std::pair(u"Job"_s, u"Name"_s), std::pair(u"Task"_s, u"Dflt Billing Status"_s),
             std::pair(Multipliers, u"Multiplier Factor"_s)})
        LookUp(kind, [&] {
            ChooseBy(choice);
            Press(Qt::Key_Escape);
        });
    EXPECT_THAT(Lookup.LookupByChoice,
        ElementsAre(u"Name"_s, u"Name"_s, u"Dflt Billing Status"_s, u"Multiplier Factor"_s));
    LookUp(u"Client"_s, [this] {
        EXPECT_EQ(By().currentText(), u"Name"_s);
        EXPECT_THAT(Column(2), ElementsAre(u"alpha"_s, u"Beta"_s, u"Zeta"_s));
        ChooseBy(u"Client"_s);
        Press(Qt::Key_Escape);
    });
    LookUp(u"Task"_s, [this] {
        EXPECT_EQ(By().currentText(), u"Dflt Billing Status"_s);
        EXPECT_THAT(Column(1), ElementsAre(u"TRAIN"_s, u"MILES"_s, u"CONS"_s, u"ODD"_s));
        Press(Qt::Key_Escape);
    });
    EXPECT_EQ(Lookup.LookupByChoice[LookupKinds::Customers], u"Client"_s);
}

TEST_F(Kinds, AChoiceRememberedUnderAFormerTermOrdersByCode)
{
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Customer"_s;
    LookUp(u"Client"_s, [this] {
        EXPECT_EQ(By().currentText(), u"Client"_s);
        EXPECT_THAT(Column(1), ElementsAre(u"0100"_s, u"0200"_s, u"0300"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, TermsThatAreTheSameMeanTheCustomers)
{
    Company.Options.Project_Term = u"Client"_s;
    Company.Options.Activity_Term = u"Client"_s;
    Start();
    LookUp(u"Client"_s, [this] {
        EXPECT_THAT(Column(2), ElementsAre(u"Zeta"_s, u"Beta"_s, u"alpha"_s));
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, TheKindIsComparedExactlyAndItsCaptionIsTrimmed)
{
    Company.Options.Customer_Term = u" Client "_s;
    Start();
    LookUp(u" Client "_s, [this] {
        EXPECT_EQ(Window().windowTitle(), u"Client Lookup"_s);
        EXPECT_EQ(Panel(1), u"Found 3 records"_s);
        Press(Qt::Key_Escape);
    });
    LookUp(u"client"_s, [this] {
        EXPECT_THAT(Items(), IsEmpty());
        EXPECT_THAT(Headers(), ElementsAre(u"UniqueID Hidden"_s));
        EXPECT_EQ(Panel(1), u"Found 3 records"_s) << "the count of the list before is kept";
        Press(Qt::Key_Escape);
    });
}

TEST_F(Kinds, AnEmptyListIsGreyAndSearchesNothing)
{
    Start();
    Entry.CustomerCode = u"0300"_s;
    LookUp(u"Job"_s, [this] {
        EXPECT_EQ(Panel(1), u"Found 0 records"_s);
        EXPECT_FALSE(Bar().isVisible());
        EXPECT_EQ(Bar().maximum(), 0);
        EXPECT_FALSE(Grid().isEnabled());
        EXPECT_EQ(Focused(), u"txtLookup"_s);
        EXPECT_TRUE(Window().isActiveWindow());
        Type("txtLookup", u"A"_s);
        EXPECT_EQ(Grid().Rows(), 1);
        ChooseBy(u"Name"_s);
        EXPECT_EQ(Focused(), u"txtLookup"_s);
        ClickButton("cmdSelect");
    });
    EXPECT_TRUE(Lookup.LookupSelected);
    EXPECT_EQ(Entry.ProjectCode, QString());
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(Kinds, ARecordWithAnEmptyCodeAndOneLongerThanItsKeyAreListedAndTaken)
{
    const QString longCode = u"0123456789ABCDEFGH"_s;
    Company.Customers = {SampleCustomer(longCode, u"Long"_s), SampleCustomer({}, u"None"_s),
        SampleCustomer(u"0123456789ABCDD"_s, u"Before"_s)};
    Start();
    LookUp(u"Client"_s, [&] {
        EXPECT_THAT(Column(1), ElementsAre(QString(), u"0123456789ABCDD"_s, longCode));
        Type("txtLookup", longCode);
        EXPECT_EQ(SelectedCode(), longCode);
        Press("msgLookup", Qt::Key_Return);
    });
    EXPECT_EQ(Lookup.LookupCustomerCode, longCode);
    Lookup.LookupCustomerCode = u"X"_s;
    LookUp(u"Client"_s, [this] { Press("msgLookup", Qt::Key_Return); });
    EXPECT_EQ(Lookup.LookupCustomerCode, QString());
}

TEST_F(Kinds, AfterALookupByNameCodesAreStillFound)
{
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    LookUp(u"Client"_s, [this] { Press(Qt::Key_Escape); });
    modDBCust &customers = Folder->Tables.Customers;
    for (const QString &code : {u"0100"_s, u"0200"_s, u"0300"_s}) {
        ASSERT_TRUE(customers.Find(0, PadKey(code, KeyWidth::Customer)));
        CustomerRecord record;
        customers.ReadCustomer(record);
        EXPECT_EQ(record.Customer_Number, code);
    }
    EXPECT_FALSE(customers.Find(0, PadKey(u"0150"_s, KeyWidth::Customer)));
}
