// Codes and the filter, chosen in the lookup of the built program under a real window manager.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Lookup : public testing::Test
{
protected:
    /// In the lookup that opens: types the text, goes down to the list and takes the record.
    static void Take(ProgramUnderTest &program, const QString &text)
    {
        program.WaitForWindow(u"frmLookup"_s);
        program.WaitForFocus(u"msgLookup"_s);
        program.Key(u"shift+Tab"_s);
        program.Enter(u"txtLookup"_s, text);
        program.Key(u"Return"_s);
        program.WaitForFocus(u"msgLookup"_s);
        program.Key(u"Return"_s);
        ProgramUnderTest::WaitUntil(
            u"the lookup to close"_s, [&] { return !program.IsOpen(u"frmLookup"_s); });
    }

    VirtualDisplay m_display;
};

} // namespace

TEST_F(Lookup, AnEntryWhoseCodesAreAllLookedUpIsEnteredWithNothingButKeys)
{
    const WorkPlace place;
    place.Synchronise();
    {
        ProgramUnderTest program(place.ProgramFolder(), m_display);
        program.WaitForWindow();
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"Return"_s);
        program.WaitForFocus(u"txtCustomer"_s);
        program.Key(u"F2"_s);
        Take(program, u"0120"_s);
        program.WaitForFocus(u"txtProject"_s);
        program.Key(u"F2"_s);
        Take(program, u"11"_s);
        program.WaitForFocus(u"txtActivity"_s);
        program.Key(u"F2"_s);
        Take(program, u"desi"_s);
        program.WaitForFocus(u"txtHours"_s);
        program.Type(u"7.5"_s);
        program.WaitForText(u"txtHours"_s, u"7.5"_s);
        program.Key(u"Return"_s);
        program.Enter(u"txtDescription"_s, u"Looked up"_s);
        program.Click(u"cmdOK"_s);
        ProgramUnderTest::WaitUntil(u"the entry in the list"_s, [&] {
            const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
            return rows.size() == 1 && rows[0][7] == u"7.50"_s;
        });
        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    EXPECT_EQ(place.Query(u"ABCEntries-WkLg"_s,
                  u"SELECT Customer_Number, Project_Number, Activity_Number, Hours, Description "
                  u"FROM \"ABCEntries-WkLg\""_s),
        u"0120|1100|DESIGN|75000|Looked up"_s);
}

TEST_F(Lookup, AFieldAtFaultIsTypedAnewAfterItsMessage)
{
    const WorkPlace place;
    place.Synchronise();
    ProgramUnderTest program(place.ProgramFolder(), m_display);
    program.WaitForWindow();
    program.WaitForFocus(u"dtpDate"_s);
    program.Key(u"Return"_s);
    program.Enter(u"txtCustomer"_s, u"0120"_s);
    program.Key(u"Return"_s);
    program.WaitForFocus(u"txtProject"_s);
    program.Key(u"Return"_s);
    program.WaitForFocus(u"txtActivity"_s);
    program.Type(u"consult"_s);
    program.WaitForText(u"txtActivity"_s, u"CONSULT"_s);
    program.Click(u"cmdOK"_s);
    program.WaitForMessage(u"Invalid Hours."_s);
    program.Answer(u"OK"_s);
    program.WaitForFocus(u"txtHours"_s);
    program.Type(u"7.5"_s);
    program.WaitForText(u"txtHours"_s, u"7.5"_s);
}

TEST_F(Lookup, TheFilterIsFilledFromLookupsAndNarrowsTheList)
{
    const WorkPlace place;
    place.Synchronise();
    ProgramUnderTest program(place.ProgramFolder(), m_display);
    program.WaitForWindow();
    for (const QString &customer : {u"0120"_s, u"0130"_s}) {
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"Return"_s);
        program.Enter(u"txtCustomer"_s, customer);
        program.Key(u"Return"_s);
        program.WaitForFocus(u"txtProject"_s);
        program.Key(u"Return"_s);
        program.WaitForFocus(u"txtActivity"_s);
        program.Type(u"consult"_s);
        program.WaitForText(u"txtActivity"_s, u"CONSULT"_s);
        program.Key(u"Return"_s);
        program.Enter(u"txtHours"_s, u"1"_s);
        program.Click(u"cmdOK"_s);
        program.WaitForText(u"txtCustomer"_s, QString());
    }
    program.WaitForRows(u"msgEntryList"_s, 2);

    program.Click(u"cmdTransFilter"_s);
    program.WaitForWindow(u"frmTransFilter"_s);
    program.Enter(u"txtCustomer"_s, u"0120"_s);
    // A cancelled lookup goes back to its box, which remembers what it shows then.
    program.Click(u"cmdCustomer"_s);
    program.WaitForWindow(u"frmLookup"_s);
    program.WaitForFocus(u"msgLookup"_s);
    program.Key(u"Escape"_s);
    program.WaitForFocus(u"txtCustomer"_s);
    program.Enter(u"txtCustomer"_s, u"9999"_s);
    program.Key(u"Return"_s);
    program.WaitForText(u"txtCustomer"_s, u"0120"_s);
    program.Key(u"F2"_s);
    Take(program, u"013"_s);
    program.WaitForFocus(u"txtProject"_s);
    EXPECT_EQ(program.Text(u"txtCustomer"_s), u"0130"_s);
    EXPECT_EQ(program.Text(u"lblCustomerName"_s), u"Dunmere Logistics"_s);
    program.Key(u"Return"_s);
    program.WaitForFocus(u"txtActivity"_s);
    program.Key(u"Return"_s);
    program.WaitForFocus(u"cmdOK"_s);
    program.Key(u"Return"_s);
    program.WaitForRows(u"msgEntryList"_s, 1);
    EXPECT_EQ(program.Rows(u"msgEntryList"_s)[0][3], u"Dunmere Logistics"_s);
}
