// The texts of the billing codes, and choosing an item of a list by its text.

#include "figures/BillingTexts.h"
#include "entry/EntryScreen.h"
#include "figures/CodeTexts.h"
#include "tests/support/PrintQt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

OptionsRecord WithTerms()
{
    OptionsRecord options;
    options.Employee_Term = u"Associate"_s;
    options.Customer_Term = u"Client"_s;
    options.Project_Term = u"Matter"_s;
    options.Activity_Term = u"Task"_s;
    return options;
}

ControlState ListOf(const QStringList &items, int index)
{
    ControlState list;
    list.Items = items;
    list.Index = index;
    return list;
}

} // namespace

TEST(BillingTexts, StatusesInCodeOrder)
{
    EXPECT_THAT(BillingStatusTexts(), ElementsAre(u"Billable"_s, u"No Charge"_s, u"Do Not Bill"_s));
}

TEST(BillingTexts, AStatusAndItsTextStandForEachOther)
{
    EXPECT_EQ(BillingStatusText(u"1"_s), u"Billable"_s);
    EXPECT_EQ(BillingStatusText(u"2"_s), u"No Charge"_s);
    EXPECT_EQ(BillingStatusText(u"3"_s), u"Do Not Bill"_s);
    for (const QString &code : {u""_s, u"0"_s, u"4"_s, u"12"_s, u" "_s, u"A"_s})
        EXPECT_EQ(BillingStatusText(code), QString()) << code.toStdString();
    for (const QString &code : {u"1"_s, u"2"_s, u"3"_s})
        EXPECT_EQ(BillingStatusCode(BillingStatusText(code)), code);
}

TEST(BillingTexts, EveryTextBesideTheFirstTwoMeansDoNotBill)
{
    EXPECT_EQ(BillingStatusCode(u"no charge"_s), u"3"_s);
    EXPECT_EQ(BillingStatusCode(QString()), u"3"_s);
}

TEST(BillingTexts, OptionsInCodeOrderWithTheCompanysTerms)
{
    EXPECT_THAT(BillingOptionTexts(WithTerms()),
        ElementsAre(
            u"Application"_s, u"Associate"_s, u"Division"_s, u"Client"_s, u"Matter"_s, u"Task"_s));
}

TEST(BillingTexts, AnOptionAndItsTextStandForEachOther)
{
    const OptionsRecord options = WithTerms();
    const QStringList texts = BillingOptionTexts(options);
    for (int i = 0; i < texts.size(); ++i) {
        const QString code = QString::number(i + 1);
        EXPECT_EQ(BillingOptionText(code, options), texts[i]);
        EXPECT_EQ(BillingOptionCode(texts[i], options), code);
    }
    for (const QString &code : {u""_s, u"0"_s, u"7"_s, u"11"_s, u"A"_s})
        EXPECT_EQ(BillingOptionText(code, options), QString()) << code.toStdString();
    EXPECT_EQ(BillingOptionCode(u"Customer"_s, options), QString());
}

TEST(SelectComboItem, SelectsTheFirstItemOfThatText)
{
    ControlState list = ListOf({u"a"_s, u"b"_s, u"b"_s}, -1);
    SelectComboItem(list, u"b"_s);
    EXPECT_EQ(list.Index, 1);
}

TEST(SelectComboItem, WithoutSuchAnItemTheSelectionIsUnchanged)
{
    ControlState list = ListOf({u"a"_s, u"b"_s}, 0);
    SelectComboItem(list, u"B"_s);
    EXPECT_EQ(list.Index, 0);
}

TEST(SelectComboItem, AnEmptyTextStepsPastTheLastItemAndSelectsNothing)
{
    ControlState list = ListOf({u"a"_s, u"b"_s}, 0);
    SelectComboItem(list, QString());
    EXPECT_EQ(list.Index, -1);
    ControlState empty = ListOf({}, -1);
    SelectComboItem(empty, QString());
    EXPECT_EQ(empty.Index, -1);
}

TEST(SelectComboItem, AnEmptyItemIsFoundBeforeTheStepPastTheEnd)
{
    ControlState list = ListOf({u"a"_s, QString()}, 0);
    SelectComboItem(list, QString());
    EXPECT_EQ(list.Index, 1);
}

TEST(CodeTexts, ATermStandsSmallInASentenceAndAnAbbreviationStays)
{
    EXPECT_EQ(InSentence(u"Customer"_s), u"customer"_s);
    EXPECT_EQ(InSentence(u" GL Account "_s), u"GL account"_s);
    EXPECT_EQ(InSentence(u"iPad"_s), u"iPad"_s);
    EXPECT_EQ(InSentence(u"PO"_s), u"PO"_s);
    EXPECT_EQ(NoSuchCode(u"GL Account"_s, u"4711"_s), u"No GL account 4711."_s);
    EXPECT_EQ(NoSuchCode({}, u"4711"_s), u"No code 4711."_s);
}
