#include "store/DatabaseNames.h"
#include "store/PadKey.h"
#include "store/Records.h"
#include "store/RecordStore.h"
#include "store/StoreErrors.h"
#include "tests/support/Raised.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// "name:type" of every field, joined by blanks; "refused" with the right number.
QString Parsed(QStringView text)
{
    QStringList fields;
    const Raised raised = RaisedBy([&] {
        for (const SchemaField &field : ParseSchema(text)) {
            const QString type = field.Type == FieldType::String ? u"S"_s
                : field.Type == FieldType::Date                  ? u"D"_s
                                                                 : u"C"_s;
            fields.append(field.Name + u':' + type);
        }
    });
    if (raised.Number == StoreErrors::MalformedSchema)
        return u"refused"_s;
    return raised.Number == 0 ? fields.join(u' ') : u"another error"_s;
}

} // namespace

TEST(SchemaText, TheThreeThatWeCreateAreWrittenLetterForLetter)
{
    EXPECT_EQ(GlobalOptionsRecord::SchemaText.toString(),
        u"Last_Company String,Entries_Exist String, Employee String,"_s);
    EXPECT_EQ(EntryRecord::SchemaText.toString(),
        u"Customer_Number String, Project_Number String, Activity_Number String, Date Date, Billing_Status String, Mgmt_Approval String, Sec_Approval String, On_Hold String, Billing_Option String, Multiplier_Number String, Rate_Overridden String, Reimburse String, Hours Currency, Rate Currency, Amount Currency, Multiplier_Factor Currency, Exp_Markup_Percent Currency, Exp_Markup_Amount Currency, Description String,"_s);
    EXPECT_EQ(HoursSummaryRecord::SchemaText.toString(),
        u"Date Date, Billable Currency, NoCharge Currency, DoNotBill Currency, Amount Currency,"_s);
}

TEST(SchemaText, IsReadInOrder)
{
    EXPECT_EQ(
        Parsed(GlobalOptionsRecord::SchemaText), u"Last_Company:S Entries_Exist:S Employee:S"_s);
    EXPECT_EQ(Parsed(EntryRecord::SchemaText),
        u"Customer_Number:S Project_Number:S Activity_Number:S Date:D Billing_Status:S "
        "Mgmt_Approval:S Sec_Approval:S On_Hold:S Billing_Option:S Multiplier_Number:S "
        "Rate_Overridden:S Reimburse:S Hours:C Rate:C Amount:C Multiplier_Factor:C "
        "Exp_Markup_Percent:C Exp_Markup_Amount:C Description:S"_s);
    EXPECT_EQ(Parsed(HoursSummaryRecord::SchemaText),
        u"Date:D Billable:C NoCharge:C DoNotBill:C Amount:C"_s);
}

TEST(SchemaText, BlanksBesideACommaCarryNoMeaning)
{
    EXPECT_EQ(Parsed(u"A String,B Date,C Currency,"), u"A:S B:D C:C"_s);
    EXPECT_EQ(Parsed(u"  A String ,   B Date , C  Currency,  "), u"A:S B:D C:C"_s);
    EXPECT_EQ(Parsed(u"A String,"), u"A:S"_s);
    EXPECT_EQ(Parsed(u"_a1_ String,"), u"_a1_:S"_s);
}

TEST(SchemaText, IsRefusedWhenMalformed)
{
    const QStringView cases[] = {u"", u" ", u",", u", ,", u"A String", u"A String, B Date",
        u"A String, B Date, C", u"A String,, B Date,", u", A String,", u"A,", u"String,", u"A  ,",
        u"A Text,", u"A string,", u"A STRING,", u"A Strings,", u"A String String,", u"A B String,",
        u"A\tString,", u"A String;", u"A String; B Date,", u"Ä String,", u"A-B String,",
        u"A\" String,", u"A' String,", u"A.B String,", u"A) String,", u"A String, A Date,",
        u"A String, a Date,", u"A String, B Date, a_ String, A Currency,", u"A String(10),",
        u"rowid String,", u"A String, ROWID Currency,", u"oid String,", u"_RowId_ Date,"};
    for (const QStringView &each : cases)
        EXPECT_EQ(Parsed(each), u"refused"_s) << each.toString().toStdString();
}

TEST(SchemaText, ARefusalSaysWhatCouldNotBeRead)
{
    const auto description
        = [](QStringView text) { return RaisedBy([&] { ParseSchema(text); }).Description; };
    EXPECT_TRUE(description(u"A String, Second Text,").contains(u"Second Text"_s));
    EXPECT_TRUE(description(u"A String, Second Date").contains(u"Second Date"_s));
    EXPECT_TRUE(description(u"Twice String, Twice Date,").contains(u"Twice"_s));
    EXPECT_TRUE(description(u"rowid String,").contains(u"rowid"_s));
}

TEST(CodeNumber, PutsTheFirstCharacterIntoTheMostSignificantByte)
{
    EXPECT_EQ(CodeNumber(u"WkLg"_s), 0x576B4C67u);
    EXPECT_EQ(CodeNumber(u"WkLg"_s), 1466649703u);
    EXPECT_EQ(CodeNumber(u"DATA"_s), 0x44415441u);
    EXPECT_EQ(CodeNumber(u"KVLM"_s), 0x4B564C4Du);
    EXPECT_EQ(CodeNumber(u"ÿÿÿÿ"_s), 0xFFFFFFFFu); // codes above 127 do not run into the next byte
    EXPECT_EQ(CodeNumber(u"   \u0001"_s), 0x20202001u);
}

TEST(CodeNumber, IsZeroForAnyOtherLength)
{
    for (const QString &code : {u""_s, u"W"_s, u"WkL"_s, u"WkLgs"_s, u"WkLg "_s})
        EXPECT_EQ(CodeNumber(code), 0u) << code.toStdString();
}

TEST(PadKey, IsExactlyAsWideAsAsked)
{
    EXPECT_EQ(PadKey(u"0100"_s, 15), u"0100           "_s);
    EXPECT_EQ(PadKey(u""_s, 3), u"   "_s);
    EXPECT_EQ(PadKey(u"ABC"_s, 3), u"ABC"_s);
    EXPECT_EQ(PadKey(u"ABCD"_s, 3), u"ABC"_s);
    EXPECT_EQ(PadKey(u" 7"_s, 4), u" 7  "_s); // blanks before the code belong to it
    EXPECT_EQ(PadKey(u"Ä"_s, 2), u"Ä "_s);
    EXPECT_EQ(PadKey(u"X"_s, 0), u""_s);
}

TEST(PadKey, AProjectIsKeyedUnderItsCustomer)
{
    EXPECT_EQ(ProjectKey(u"0100"_s, u"AUDIT"_s), u"0100           AUDIT          "_s);
    EXPECT_EQ(ProjectKey(u"12345678901234567"_s, u"P"_s).size(), 30);
    EXPECT_EQ(ProjectKey(u"12345678901234567"_s, u"P"_s), u"123456789012345P              "_s);
    EXPECT_EQ(ProjectKey({}, u"P"_s), u"               P              "_s);
}

TEST(PadKey, TheWidthsAreThoseOfTheReferenceTables)
{
    EXPECT_EQ(KeyWidth::Customer, 15);
    EXPECT_EQ(KeyWidth::Project, 15);
    EXPECT_EQ(KeyWidth::Activity, 15);
    EXPECT_EQ(KeyWidth::Division, 2);
    EXPECT_EQ(KeyWidth::Employee, 3);
    EXPECT_EQ(KeyWidth::Multiplier, 2);
}

TEST(DatabaseNames, AreJoinedWithoutSeparators)
{
    EXPECT_EQ(GlobalDatabaseName(DatabasePrefix::Company, u"WkLg"_s), u"Company-WkLg"_s);
    EXPECT_EQ(
        GlobalDatabaseName(DatabasePrefix::GlobalOptions, u"WkLg"_s), u"GlobalOptions-WkLg"_s);
    const struct
    {
        QStringView Prefix;
        QString Name;
    } cases[] = {
        {DatabasePrefix::Options, u"ABCOptions-WkLg"_s},
        {DatabasePrefix::Employee, u"ABCEmployee-WkLg"_s},
        {DatabasePrefix::Multiplier, u"ABCMultiplier-WkLg"_s},
        {DatabasePrefix::Divisions, u"ABCDivisions-WkLg"_s},
        {DatabasePrefix::Customers, u"ABCCustomers-WkLg"_s},
        {DatabasePrefix::Projects, u"ABCProjects-WkLg"_s},
        {DatabasePrefix::Activities, u"ABCActivities-WkLg"_s},
        {DatabasePrefix::Entries, u"ABCEntries-WkLg"_s},
        {DatabasePrefix::HoursSummary, u"ABCHoursSummary-WkLg"_s},
    };
    for (const auto &each : cases)
        EXPECT_EQ(CompanyDatabaseName(u"ABC"_s, each.Prefix, u"WkLg"_s), each.Name);
}

TEST(DatabaseNames, DegenerateWithoutACompanyCode)
{
    EXPECT_EQ(CompanyDatabaseName({}, DatabasePrefix::Entries, u"WkLg"_s), u"Entries-WkLg"_s);
}
