// What is typed, and where each list goes for it.

#include "tests/lookup/LookupFixture.h"

#include <QAbstractItemView>
#include <QLocale>
#include <QScopeGuard>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

const QString Multipliers = LookupKinds::BillingRateMultiplier;

class Search : public LookupFixture
{
protected:
    /// Types the text in place of the last one; the code that is selected then.
    QString CodeFor(const QString &text)
    {
        Type("txtLookup", text);
        ExpectOneRowAndItsRecord();
        return SelectedCode();
    }
};

} // namespace

TEST_F(Search, CustomersByCode)
{
    Company.Customers = NumberedCustomers(100);
    Start();
    LookUp(u"Customer"_s, [this] {
        EXPECT_EQ(CodeFor(u"C051"_s), u"C051"_s);
        EXPECT_EQ(Bar().value(), 50);
        EXPECT_EQ(Grid().Row(), 1);
        EXPECT_EQ(Grid().Rows() - 1, 12);
        EXPECT_EQ(CodeFor(u"c096"_s), u"C096"_s) << "typed letters count as capitals";
        EXPECT_EQ(Box("txtLookup").text(), u"c096"_s) << "but are not changed";
        EXPECT_EQ(Bar().value(), 89);
        EXPECT_EQ(Grid().Row(), 7);
        EXPECT_EQ(Grid().Rows() - 1, 11);
        EXPECT_EQ(CodeFor(u"C006"_s), u"C006"_s);
        EXPECT_EQ(Bar().value(), 0);
        EXPECT_EQ(Grid().Row(), 6);
        EXPECT_EQ(CodeFor(u"C0065"_s), u"C007"_s) << "the next one where none is equal";
        EXPECT_EQ(CodeFor(u"C0"_s), u"C001"_s);
        EXPECT_EQ(CodeFor(u"D"_s), u"C090"_s) << "past the end: the last page's first row";
        EXPECT_EQ(CodeFor(u"B"_s), u"C001"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, EveryLetterTypedMovesOn)
{
    Company.Customers = NumberedCustomers(100);
    Start();
    LookUp(u"Customer"_s, [this] {
        auto &box = Box("txtLookup");
        box.setFocus();
        QStringList visited;
        for (const char letter : {'c', '0', '5', '7'}) {
            QTest::keyClick(&box, letter);
            visited.append(SelectedCode());
        }
        EXPECT_THAT(visited, ElementsAre(u"C001"_s, u"C001"_s, u"C050"_s, u"C057"_s));
        QTest::keyClick(&box, Qt::Key_Backspace);
        EXPECT_EQ(SelectedCode(), u"C050"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, CustomersByNameRegardlessOfCaseAndWithAccents)
{
    Company.Customers = {SampleCustomer(u"1"_s, u"smith"_s), SampleCustomer(u"2"_s, u"Sloan"_s),
        SampleCustomer(u"3"_s, u"Sm"_s), SampleCustomer(u"4"_s, u"SNOW"_s),
        SampleCustomer(u"5"_s, u"\u00e9mile"_s), SampleCustomer(u"6"_s, u"\u00c9tude"_s),
        SampleCustomer(u"7"_s, u"\u00b5-Tech"_s), SampleCustomer(u"8"_s, u"\u00ffle"_s)};
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    LookUp(u"Customer"_s, [this] {
        EXPECT_EQ(CodeFor(u"SM"_s), u"3"_s) << "equal to it";
        EXPECT_EQ(CodeFor(u"smi"_s), u"1"_s);
        EXPECT_EQ(CodeFor(u"smj"_s), u"4"_s) << "the next that sorts after it";
        EXPECT_EQ(CodeFor(u"\u00e9m"_s), u"5"_s);
        EXPECT_EQ(CodeFor(u"\u00e9mile"_s), u"5"_s);
        EXPECT_EQ(CodeFor(u"\u00e9n"_s), u"6"_s);
        // Small letters that lie before their capitals.
        EXPECT_EQ(CodeFor(u"\u00b5-tech"_s), u"7"_s);
        EXPECT_EQ(CodeFor(u"\u00ffle"_s), u"8"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, ASmallLetterBeforeItsCapitalIsFoundOnTheFirstRecordToo)
{
    Company.Customers
        = {SampleCustomer(u"1"_s, u"\u65e5\u672c"_s), SampleCustomer(u"2"_s, u"\u00ffle"_s)};
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    LookUp(u"Customer"_s, [this] {
        EXPECT_EQ(CodeFor(u"\u65e5"_s), u"1"_s);
        EXPECT_EQ(CodeFor(u"\u00ffle"_s), u"2"_s);
        EXPECT_EQ(Grid().Row(), 1);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, ACodeLongerThanFifteenCharactersIsCut)
{
    Company.Customers = {SampleCustomer(u"0123456789ABCDE"_s, u"First"_s),
        SampleCustomer(u"0123456789ABCDF"_s, u"Second"_s)};
    Start();
    LookUp(u"Customer"_s, [this] {
        EXPECT_EQ(CodeFor(u"0123456789ABCDEZZZ"_s), u"0123456789ABCDE"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, ActivitiesByCodeDescriptionAndTheFirstLetterOfTheBillingStatus)
{
    Company.Activities = {SampleActivity(u"A"_s, u"zeal"_s, {}, u"3"_s),
        SampleActivity(u"B"_s, u"Yoga"_s, {}, u"2"_s),
        SampleActivity(u"C"_s, u"X-ray"_s, {}, u"1"_s),
        SampleActivity(u"D"_s, u"Wine"_s, {}, u"2"_s),
        SampleActivity(u"E"_s, u"Vase"_s, {}, u"Q"_s)};
    Start();
    LookUp(u"Activity"_s, [this] {
        EXPECT_EQ(CodeFor(u"bb"_s), u"C"_s);
        ChooseBy(u"Description"_s);
        EXPECT_EQ(CodeFor(u"y"_s), u"B"_s);
        EXPECT_EQ(CodeFor(u"z"_s), u"A"_s);
        ChooseBy(u"Dflt Billing Status"_s);
        EXPECT_EQ(CodeFor(u"n"_s), u"B"_s);
        EXPECT_EQ(CodeFor(u"bill"_s), u"C"_s);
        EXPECT_EQ(CodeFor(u"Do"_s), u"A"_s);
        EXPECT_EQ(CodeFor(u"q"_s), u"E"_s) << "any other text is itself searched for";
        EXPECT_EQ(CodeFor(u"2"_s), u"B"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, MultipliersByCodeDescriptionAndFactor)
{
    Company.Multipliers = {SampleMultiplier(u"01"_s, u"Zero"_s, Currency::FromScaled(20000)),
        SampleMultiplier(u"02"_s, u"Yes"_s, Currency::FromScaled(9000)),
        SampleMultiplier(u"03"_s, u"Xenia"_s, Currency::FromScaled(100000))};
    Start();
    LookUp(Multipliers, [this] {
        EXPECT_EQ(CodeFor(u"0299"_s), u"02"_s) << "cut to two characters";
        ChooseBy(u"Description"_s);
        EXPECT_EQ(CodeFor(u"y"_s), u"02"_s);
        ChooseBy(u"Multiplier Factor"_s);
        EXPECT_EQ(CodeFor(u"2"_s), u"01"_s);
        EXPECT_EQ(CodeFor(u"2.0001"_s), u"03"_s) << "10 sorts after 2";
        EXPECT_EQ(CodeFor(u".9"_s), u"02"_s);
        EXPECT_EQ(CodeFor(u"twice"_s), u"02"_s) << "no number: the lowest factor";
        EXPECT_EQ(CodeFor(u"99999999999999999999"_s), u"02"_s) << "out of range: no number";
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, FactorsAreTypedWithTheDecimalSignThatTheListShows)
{
    const QLocale before;
    const auto restored = qScopeGuard([&] { QLocale::setDefault(before); });
    Company.Multipliers = {SampleMultiplier(u"01"_s, u"Low"_s, Currency::FromScaled(12500)),
        SampleMultiplier(u"02"_s, u"Middle"_s, Currency::FromScaled(15000)),
        SampleMultiplier(u"03"_s, u"High"_s, Currency::FromScaled(150000))};
    Start();
    Lookup.LookupByChoice[LookupKinds::Multipliers] = u"Multiplier Factor"_s;
    QLocale::setDefault(QLocale(QLocale::German));
    LookUp(Multipliers, [this] {
        EXPECT_THAT(Column(3), ElementsAre(u"1,2500"_s, u"1,5000"_s, u"15,0000"_s));
        EXPECT_EQ(CodeFor(u"1,5"_s), u"02"_s);
        EXPECT_EQ(CodeFor(u"1,25"_s), u"01"_s);
        EXPECT_EQ(CodeFor(u"1.5"_s), u"02"_s);
        EXPECT_EQ(CodeFor(u"15"_s), u"03"_s);
        Press(Qt::Key_Escape);
    });
    QLocale::setDefault(QLocale::c());
    LookUp(Multipliers, [this] {
        EXPECT_THAT(Column(3), ElementsAre(u"1.2500"_s, u"1.5000"_s, u"15.0000"_s));
        EXPECT_EQ(CodeFor(u"1.5"_s), u"02"_s);
        EXPECT_EQ(CodeFor(u"1,5"_s), u"03"_s) << "a comma groups digits";
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, TheFirstRecordIsFoundAlsoWhereItsSmallLetterLiesBeforeTheOneFound)
{
    Company.Customers = {SampleCustomer(u"1"_s, u"\u00b5-tech"_s),
        SampleCustomer(u"2"_s, u"\u039c-TECH"_s), SampleCustomer(u"3"_s, u"\u039d"_s)};
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    LookUp(u"Customer"_s, [this] {
        EXPECT_THAT(Column(1), ElementsAre(u"1"_s, u"2"_s, u"3"_s));
        EXPECT_EQ(CodeFor(u"\u039c-tech"_s), u"1"_s);
        EXPECT_EQ(CodeFor(u"\u039d"_s), u"3"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, ATermThatIsAlsoAnotherColumnsNameOrdersByCodeWhenNothingIsRemembered)
{
    Company.Options.Customer_Term = u"Name"_s;
    Company.Options.Activity_Term = u"Description"_s;
    Company.Customers = {SampleCustomer(u"A"_s, u"Zulu"_s), SampleCustomer(u"B"_s, u"Alpha"_s)};
    Company.Activities = {SampleActivity(u"A"_s, u"Zeal"_s), SampleActivity(u"B"_s, u"Art"_s)};
    Start();
    for (const QString &term : {u"Name"_s, u"Description"_s}) {
        SCOPED_TRACE(term.toStdString());
        LookUp(term, [this] {
            EXPECT_EQ(By().currentIndex(), 0);
            EXPECT_THAT(Column(1), ElementsAre(u"A"_s, u"B"_s));
            EXPECT_EQ(CodeFor(u"b"_s), u"B"_s);
            Press("cboLookupBy", Qt::Key_Down);
            QTest::keyClick(By().view(), Qt::Key_Down);
            QTest::keyClick(By().view(), Qt::Key_Return);
            LetEventsRun();
            EXPECT_EQ(By().currentIndex(), 1);
            EXPECT_THAT(Column(1), ElementsAre(u"B"_s, u"A"_s));
            EXPECT_EQ(CodeFor(u"z"_s), u"A"_s);
            Press("cboLookupBy", Qt::Key_Up);
            EXPECT_EQ(By().currentIndex(), 0);
            EXPECT_THAT(Column(1), ElementsAre(u"A"_s, u"B"_s));
            EXPECT_EQ(CodeFor(u"b"_s), u"B"_s) << "searched as it is ordered";
            Press(Qt::Key_Escape);
        });
    }
}

TEST_F(Search, ProjectsAreSearchedAmongTheCustomersOwn)
{
    Company.Projects.clear();
    for (int i = 1; i <= 30; ++i) {
        Company.Projects.push_back(
            SampleProject(u"0100"_s, u"P%1"_s.arg(i, 2, 10, QChar(u'0')), u"Other %1"_s.arg(i)));
        Company.Projects.push_back(SampleProject(
            u"0200"_s, u"P%1"_s.arg(i, 2, 10, QChar(u'0')), u"work %1"_s.arg(99 - i)));
    }
    Start();
    Entry.CustomerCode = u"0200"_s;
    LookUp(u"Project"_s, [this] {
        EXPECT_EQ(Panel(1), u"Found 30 records"_s);
        EXPECT_EQ(CodeFor(u"p17"_s), u"P17"_s);
        EXPECT_EQ(Bar().value(), 16);
        EXPECT_EQ(CodeFor(u"p171"_s), u"P18"_s);
        EXPECT_EQ(CodeFor(u"z"_s), u"P30"_s) << "the last project where nothing matches";
        EXPECT_EQ(CodeFor(u""_s), u"P01"_s);
        ChooseBy(u"Name"_s);
        EXPECT_EQ(CodeFor(u"WORK 80"_s), u"P19"_s);
        EXPECT_EQ(Grid().TextMatrix(Grid().Row(), 2), u"work 80"_s);
        EXPECT_EQ(CodeFor(u"a"_s), u"P30"_s) << "the first by name";
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, AStartTextIsSearchedAsItStandsAndNotShown)
{
    Company.Customers = {SampleCustomer(u"1"_s, u"ABLE"_s), SampleCustomer(u"2"_s, u"SM"_s),
        SampleCustomer(u"3"_s, u"Sm"_s), SampleCustomer(u"4"_s, u"Snow"_s)};
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    const auto codeOnOpening = [this](const QString &start) {
        QString code;
        Lookup.LookupStartText = start;
        Lookup.LookupStartPending = true;
        LookUp(u"Customer"_s, [&] {
            EXPECT_EQ(Box("txtLookup").text(), QString());
            EXPECT_EQ(Focused(), u"msgLookup"_s);
            EXPECT_FALSE(Lookup.LookupStartPending);
            ExpectOneRowAndItsRecord();
            code = SelectedCode();
            Press(Qt::Key_Escape);
        });
        return code;
    };
    EXPECT_EQ(codeOnOpening(u"SM"_s), u"2"_s);
    EXPECT_EQ(codeOnOpening(u"sm"_s), u"4"_s) << "in small letters it sorts after both";
    EXPECT_EQ(Lookup.LookupStartText, u"sm"_s);
}

TEST_F(Search, AStartTextInMixedCaseStepsOverARecordWhoseCapitalsSortBeforeIt)
{
    Company.Customers = {SampleCustomer(u"1"_s, u"sm"_s), SampleCustomer(u"2"_s, u"Snow"_s)};
    Start();
    Lookup.LookupByChoice[LookupKinds::Customers] = u"Name"_s;
    Lookup.LookupStartText = u"Sm"_s;
    Lookup.LookupStartPending = true;
    LookUp(u"Customer"_s, [this] {
        EXPECT_EQ(SelectedCode(), u"2"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, AStartTextWithoutAStartIsNotUsed)
{
    Company.Customers = NumberedCustomers(20);
    Start();
    Lookup.LookupStartText = u"C015"_s;
    LookUp(u"Customer"_s, [this] {
        EXPECT_EQ(SelectedCode(), u"C001"_s);
        Press(Qt::Key_Escape);
    });
}

TEST_F(Search, AStartOnAnEmptyListStaysPendingForTheOpenerToClear)
{
    Company.Customers.clear();
    Start();
    Lookup.LookupStartText = u"C015"_s;
    Lookup.LookupStartPending = true;
    LookUp(u"Customer"_s, [this] { Press(Qt::Key_Escape); });
    EXPECT_TRUE(Lookup.LookupStartPending);
}

TEST_F(Search, AChoiceThatIsNotAppliedYetIsNotSearched)
{
    Company.Customers = {SampleCustomer(u"A"_s, u"Zulu"_s), SampleCustomer(u"N"_s, u"Mike"_s),
        SampleCustomer(u"Z"_s, u"Alpha"_s)};
    Start();
    LookUp(u"Customer"_s, [this] {
        By().setFocus();
        QTest::keyClicks(&By(), u"n"_s);
        EXPECT_EQ(By().currentText(), u"Name"_s);
        EXPECT_EQ(CodeFor(u"m"_s), u"N"_s) << "by code, as the list is ordered";
        Press(Qt::Key_Escape);
    });
}
