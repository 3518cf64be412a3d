// The page "First steps" of the help, followed to the letter by somebody who knows nothing else.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString FolderPrompt
    = u"Please select the MAS 90 or MAS 200 client installation to synchronize with. "
      u"Worklog Remote will append MAS90."_s;

class FirstSteps : public testing::Test
{
protected:
    void FetchTheCompanysData(ProgramUnderTest &program)
    {
        program.WaitForMessage(u"Please perform a synchronization first."_s);
        program.Answer(u"OK"_s);
        program.ChooseByKeys(u"Options"_s, u"Configure"_s);
        program.WaitForMessage(
            u"Error #53 (File not found: %1)."_s.arg(m_place.InProgramFolder(u"mas90.ini"_s)));
        program.Answer(u"OK"_s);
        program.WaitForWindow(u"frmConfigure"_s);
        program.Click(u"cmdBrowse"_s);
        program.ChooseFolder(m_place.FolderOfRoot(), FolderPrompt);
        program.WaitForText(u"txtMas90Path"_s, m_place.Root());
        program.Click(u"cmdAccept"_s);
        program.WaitUntilClosed(u"frmConfigure"_s);
        program.Click(u"cmdSync"_s);
        ProgramUnderTest::WaitUntil(u"the company's data"_s,
            [&] { return program.Text(u"lblCompanyName"_s) == u"Abernook Business Consulting"_s; });
    }

    /// The steps that time and expenses share, up to the activity.
    void UpToActivity(ProgramUnderTest &program, const QString &activity)
    {
        program.WaitForFocus(u"dtpDate"_s);
        program.Key(u"Return"_s);
        program.Enter(u"txtCustomer"_s, u"0100"_s);
        program.Key(u"Return"_s);
        program.WaitForFocus(u"txtProject"_s);
        program.Key(u"Return"_s); // left empty
        program.Enter(u"txtActivity"_s, activity);
        program.Key(u"Return"_s);
        program.WaitForFocus(u"txtHours"_s);
    }
    void DescribeAndPressOK(ProgramUnderTest &program, const QString &description, int entries)
    {
        program.Click(u"txtDescription"_s);
        program.Enter(u"txtDescription"_s, description);
        program.Click(u"cmdOK"_s);
        ProgramUnderTest::WaitUntil(u"the entry in the list"_s, [&] {
            const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
            return rows.size() == entries && !rows.constLast()[0].isEmpty();
        });
    }

    const WorkPlace m_place;
    const VirtualDisplay m_display;
};

} // namespace

TEST_F(FirstSteps, LeadFromNothingToAnHourAndTwoExpensesInAccounting)
{
    m_place.RemoveLaunchFile();
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    FetchTheCompanysData(program);

    UpToActivity(program, u"CONSULT"_s);
    program.Type(u"7.5"_s);
    program.Key(u"Return"_s);
    program.WaitForFocus(u"txtDescription"_s);
    EXPECT_EQ(program.Text(u"cboBStatus"_s), u"Billable"_s);
    DescribeAndPressOK(program, u"An hour"_s, 1);

    UpToActivity(program, u"MILEAGE"_s);
    EXPECT_EQ(program.Text(u"lblHours"_s), u"Units"_s);
    EXPECT_EQ(program.Text(u"txtRate"_s), u".425"_s);
    program.Type(u"120"_s);
    DescribeAndPressOK(program, u"An expense"_s, 2);

    // A bill that was paid: the cost of one unit is typed.
    UpToActivity(program, u"HOTEL"_s);
    program.Type(u"1"_s);
    EXPECT_EQ(program.Text(u"txtRate"_s), u".000"_s);
    program.Click(u"txtRate"_s);
    program.WaitForFocus(u"txtRate"_s);
    program.Key(u"ctrl+a"_s);
    program.Type(u"89.50"_s);
    program.Key(u"Return"_s);
    program.WaitForText(u"txtAmount"_s, u"89.50"_s);
    program.Click(u"chkReimburse"_s);
    DescribeAndPressOK(program, u"A bill"_s, 3);

    program.Click(u"cmdSync"_s);
    ProgramUnderTest::WaitUntil(u"an empty list"_s, [&] {
        const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
        return rows.size() == 1 && rows[0][0].isEmpty();
    });
    const QStringList collected = m_place.UploadedRows(u"ABC"_s);
    ASSERT_EQ(collected.size(), 3);
    EXPECT_THAT(collected[0].toStdString(),
        testing::HasSubstr(",1,,,N,6,,N,N,7.5000,120.0000,900.0000,1.0000,"));
    EXPECT_THAT(collected[1].toStdString(), testing::HasSubstr(",120.0000,0.4250,51.0000,"));
    EXPECT_THAT(collected[2].toStdString(), testing::HasSubstr(",Y,1.0000,89.5000,89.5000,"));
}
