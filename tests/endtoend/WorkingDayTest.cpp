// A whole working day, entered in the built program with nothing but keys.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class WorkingDay : public testing::Test
{
protected:
    void Code(ProgramUnderTest &program, const QString &box, const QString &typed)
    {
        program.WaitForFocus(box);
        if (!typed.isEmpty()) {
            program.Type(typed);
            program.WaitForText(box, typed.toUpper());
        }
        program.Key(u"Return"_s);
    }

    /// From the date to the description, which has the focus afterwards.
    void UpToDescription(ProgramUnderTest &program, const QString &customer, const QString &project,
        const QString &activity, const QString &hours)
    {
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"Return"_s);
        Code(program, u"txtCustomer"_s, customer);
        Code(program, u"txtProject"_s, project);
        Code(program, u"txtActivity"_s, activity);
        program.WaitForFocus(u"txtHours"_s);
        program.Type(hours);
        program.Key(u"Return"_s);
        program.WaitForFocus(u"txtDescription"_s);
    }

    /// The description, and on to OK.
    void DescribeAndSave(ProgramUnderTest &program, const QString &description)
    {
        program.WaitForFocus(u"txtDescription"_s);
        program.Type(description);
        program.WaitForText(u"txtDescription"_s, description);
        program.Key(u"Tab"_s);
        program.WaitForFocus(u"cmdOK"_s);
        ++m_saved;
        program.Key(u"Return"_s);
        ProgramUnderTest::WaitUntil(u"entry number "_s + QString::number(m_saved), [&] {
            const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
            return rows.size() == m_saved && !rows.last()[0].isEmpty()
                && program.Text(u"txtCustomer"_s).isEmpty();
        });
    }

    VirtualDisplay m_display;
    int m_saved = 0;
};

} // namespace

TEST_F(WorkingDay, IsEnteredWithNothingButKeysAndStandsInTheDatabase)
{
    const WorkPlace place;
    place.Synchronise();
    {
        ProgramUnderTest program(place.ProgramFolder(), m_display);
        program.WaitForWindow();

        UpToDescription(program, u"0100"_s, u"1000"_s, u"consult"_s, u"2.25"_s);
        DescribeAndSave(program, u"Kick-off"_s);

        // A wrong code on the way: it gives way, and the day goes on.
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"Return"_s);
        Code(program, u"txtCustomer"_s, u"nobody"_s);
        program.WaitForText(u"txtCustomer"_s, QString());
        program.WaitForFocus(u"txtCustomer"_s);
        Code(program, u"txtCustomer"_s, u"0110"_s);
        Code(program, u"txtProject"_s, QString());
        Code(program, u"txtActivity"_s, u"internal"_s);
        program.WaitForFocus(u"txtHours"_s);
        program.Type(u".5"_s);
        program.Key(u"Return"_s);
        DescribeAndSave(program, u"Jour fixe"_s);

        UpToDescription(program, u"0100"_s, QString(), u"mileage"_s, u"120"_s);
        DescribeAndSave(program, u"There and back"_s);

        // A rate of one's own, and an hour too many for the box.
        UpToDescription(program, u"0100"_s, u"1000"_s, u"design"_s, u"123"_s);
        program.MoveFocusTo(u"txtRate"_s, u"shift+Tab"_s);
        program.Type(u"80"_s);
        program.Key(u"Return"_s);
        program.MoveFocusTo(u"txtDescription"_s, u"Tab"_s);
        DescribeAndSave(program, u"A long design"_s);

        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    EXPECT_EQ(
        place.Query(u"ABCEntries-WkLg"_s,
            u"SELECT Customer_Number, Project_Number, Activity_Number, Billing_Status, Hours, "
            u"Rate, Amount, Rate_Overridden, Description FROM \"ABCEntries-WkLg\" "
            u"ORDER BY rowid"_s),
        u"0100|1000|CONSULT|1|22500|1200000|2700000|N|Kick-off\n"
        u"0110||INTERNAL|3|5000|0|0|N|Jour fixe\n"
        u"0100||MILEAGE|1|1200000|4250|510000|N|There and back\n"
        u"0100|1000|DESIGN|1|120000|800000|9600000|Y|A long design"_s);
    EXPECT_EQ(place.Query(u"ABCEntries-WkLg"_s,
                  u"SELECT DISTINCT length(Date) || substr(Date, 11) FROM \"ABCEntries-WkLg\""_s),
        u"19 00:00:00"_s);
    EXPECT_TRUE(place.Journals().isEmpty());
}
