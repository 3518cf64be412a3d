// What a user sets up, chooses and clears away around a synchronisation, on the built program with
// nothing but keys; and what is then in the files.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

const QString SynchroniseFirst = u"Please perform a synchronization first."_s;

class Synchronisation : public testing::Test
{
protected:
    /// Presses the button; the window that opens afterwards shows the company's data.
    void Synchronise(ProgramUnderTest &program)
    {
        const int before = m_place.FinishedRuns();
        program.WaitUntilActive();
        program.Key(u"alt+s"_s);
        ProgramUnderTest::WaitUntil(u"the company's data"_s, [&] {
            return m_place.FinishedRuns() == before + 1 && program.IsOpen(u"frmEntryList"_s)
                && program.Text(u"cboCompany"_s) == u"ABC"_s;
        });
        EXPECT_TRUE(program.IsEnabled(u"txtCustomer"_s));
        EXPECT_THAT(m_place.Journals(), IsEmpty());
    }

    void EnterAndSave(ProgramUnderTest &program, const QString &hours, const QString &description)
    {
        program.EnterTime(hours, description);
        program.Key(u"Tab"_s);
        program.WaitForFocus(u"cmdOK"_s);
        program.Key(u"Return"_s);
        program.WaitForText(u"txtDescription"_s, QString());
    }

    QString Stored(const QString &database, const QString &columns) const
    {
        return m_place.Query(database, u"SELECT %1 FROM \"%2\" LIMIT 1"_s.arg(columns, database));
    }
    QString EntryCount() const { return Stored(u"ABCEntries-WkLg"_s, u"count(*)"_s); }
    QString FirstCustomer() const { return Stored(u"ABCCustomers-WkLg"_s, u"Customer_Name"_s); }
    QString SyncOption() const { return Stored(u"ABCOptions-WkLg"_s, u"Sync_Option"_s); }

    const WorkPlace m_place;
    const VirtualDisplay m_display;
};

} // namespace

TEST_F(Synchronisation, AFirstInstallationIsTypedInAndUsedAtOnce)
{
    m_place.RemoveLaunchFile();
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForMessage(SynchroniseFirst);
    program.AnswerByKeys(u"Return"_s);

    program.ChooseByKeys(u"Options"_s, u"Configure"_s);
    program.WaitForMessage(
        u"Error #53 (File not found: %1)."_s.arg(m_place.InProgramFolder(u"mas90.ini"_s)));
    program.AnswerByKeys(u"Return"_s);
    program.WaitForFocus(u"optMas90_0"_s);
    program.Key(u"Tab"_s);
    program.Enter(u"txtMas90Path"_s, m_place.Root());
    program.Key(u"Return"_s);
    program.WaitForFocus(u"cmdBrowse"_s);
    program.Key(u"alt+a"_s);
    program.WaitUntilClosed(u"frmConfigure"_s);

    const QString root = m_place.Root();
    EXPECT_THAT(m_place.LaunchFileLines(),
        ElementsAre(root,
            u"\"%1\" \"%2\" -ARG RUN_DIRECT UION * WLWXBA"_s.arg(
                m_place.InRoot(u"launcher/sota.ini"_s), m_place.InRoot(u"kv/kv_startup.m4p"_s)),
            QString()));
    EXPECT_FALSE(m_place.HasSettings()) << "there is no server to remember";
    Synchronise(program);
}

TEST_F(Synchronisation, AClientOfAServerIsBrowsedForAndItsServerRemembered)
{
    m_place.MakeClientInstallation();
    const QString root = m_place.Root();
    {
        ProgramUnderTest program(m_place.ProgramFolder(), m_display);
        program.WaitForMessage(SynchroniseFirst);
        program.AnswerByKeys(u"Return"_s);

        program.ChooseByKeys(u"Options"_s, u"Configure"_s);
        program.WaitForFocus(u"optMas90_1"_s);
        EXPECT_EQ(program.Text(u"txtMas90Path"_s), root);
        EXPECT_EQ(program.Text(u"tbxPort"_s), u"10000"_s);
        program.Key(u"alt+b"_s);
        program.ChooseFolder(m_place.FolderOfRoot(),
            u"Please select the MAS 90 or MAS 200 client installation to synchronize with. "
            u"Worklog Remote will append MAS90."_s);
        program.WaitForText(u"tbxHost"_s, u"server"_s);
        program.WaitUntilActive(u"frmConfigure"_s);
        EXPECT_EQ(program.Text(u"txtMas90Path"_s), root);
        EXPECT_TRUE(program.IsChecked(u"optMas90_1"_s));

        program.Key(u"alt+h"_s); // the whole text is selected
        program.Enter(u"tbxHost"_s, u"winter"_s);
        program.Key(u"alt+a"_s);
        program.WaitUntilClosed(u"frmConfigure"_s);
        EXPECT_THAT(m_place.LaunchFileLines(),
            ElementsAre(root,
                u"\"%1\" KV_Client -ARG \"winter\" \"10000\" \"KV_DIRECT\" "
                u"-ARG=RUN_DIRECT UION * WLWXBA"_s.arg(m_place.InRoot(u"launcher/sota.ini"_s)),
                QString()));
        EXPECT_EQ(m_place.Setting(u"MAS200/Host"_s), u"winter"_s);
        EXPECT_EQ(m_place.Setting(u"MAS200/Port"_s), u"10000"_s);
        Synchronise(program);
        program.WaitUntilActive();
        program.Key(u"Escape"_s);
        EXPECT_EQ(program.WaitForEnd(), 0);
    }
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForWindow();
    program.ChooseByKeys(u"Options"_s, u"Configure"_s);
    program.WaitForFocus(u"optMas90_1"_s);
    EXPECT_EQ(program.Text(u"tbxHost"_s), u"winter"_s);
}

namespace {

struct Choice
{
    const char *Name;
    int Option;
    QString Description;
    bool Uploads;
    bool Empties;
    bool Rewrites;

    friend void PrintTo(const Choice &choice, std::ostream *stream) { *stream << choice.Name; }
};

class ChosenOption : public Synchronisation, public testing::WithParamInterface<Choice>
{
};

} // namespace

TEST_P(ChosenOption, IsWhatTheNextSynchronisationDoes)
{
    const Choice &choice = GetParam();
    m_place.Synchronise();
    m_place.Replace(u"ABC"_s, u"Customers"_s, "Alderbrook Instruments", "Alderbrook Renamed");
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForWindow();
    EnterAndSave(program, u"7.5"_s, u"Work to hand over"_s);

    program.ChooseByKeys(u"Options"_s, u"Sync"_s);
    program.WaitForFocus(u"optSyncOption0"_s);
    for (int option = 0; option < choice.Option; ++option)
        program.Key(u"Down"_s);
    program.WaitForText(u"lblSyncOptionDesc"_s, choice.Description);
    EXPECT_TRUE(program.IsChecked(u"optSyncOption"_s + QString::number(choice.Option)));
    program.Key(u"alt+a"_s);
    program.WaitUntilClosed(u"frmSyncOptions"_s);
    EXPECT_EQ(SyncOption(), QString::number(choice.Option));
    EXPECT_EQ(EntryCount(), u"1"_s);

    Synchronise(program);
    if (choice.Empties && !choice.Uploads) {
        ProgramUnderTest::WaitUntil(u"the report of what was erased"_s,
            [&] { return program.MessageText().startsWith(u"An entry of the company ABC "_s); });
        program.AnswerByKeys(u"Return"_s);
    }
    EXPECT_EQ(program.MessageText(), QString());
    const QStringList uploaded = m_place.UploadedRows(u"ABC"_s);
    EXPECT_EQ(uploaded.size(), choice.Uploads ? 1 : 0);
    for (const QString &row : uploaded) {
        EXPECT_THAT(row.toStdString(), HasSubstr("0100,1000,CONSULT,"));
        EXPECT_THAT(row.toStdString(), HasSubstr(",7.5000,"));
        EXPECT_THAT(row.toStdString(), HasSubstr("Work to hand over"));
    }
    EXPECT_EQ(EntryCount(), choice.Empties ? u"0"_s : u"1"_s);
    EXPECT_EQ(
        FirstCustomer(), choice.Rewrites ? u"Alderbrook Renamed"_s : u"Alderbrook Instruments"_s);
    EXPECT_EQ(SyncOption(), QString::number(choice.Option));
    EXPECT_EQ(Stored(u"GlobalOptions-WkLg"_s, u"Last_Company || Entries_Exist"_s), u"ABCY"_s);
    const QList<QStringList> rows = program.Rows(u"msgEntryList"_s);
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows[0][7], choice.Empties ? QString() : u"7.50"_s);
}

INSTANTIATE_TEST_SUITE_P(All, ChosenOption,
    testing::Values(Choice{"FullSync", 0,
                        u"This sync option will upload Worklog on the Computer and download new "
                        u"information from Sample Ledger."_s,
                        true, true, true},
        Choice{"ComputerUpdatesAccounting", 1,
            u"This sync option will upload Worklog entries made on the Computer."_s, true, true,
            false},
        Choice{"AccountingUpdatesComputer", 2,
            u"W A R N I N G !!!\r\nThis sync option will erase all Worklog data on the Computer."_s,
            false, true, true},
        Choice{"NoSync", 3, u"This sync option will not synchronize Worklog data."_s, false, false,
            false}),
    [](const auto &choice) { return std::string(choice.param.Name); });

TEST_F(Synchronisation, DeletedDatabasesComeBackEmptyWithTheNextOne)
{
    const QString warning = u"W A R N I N G\r\n\r\nAll application data will be lost.\r\n\r\n"
                            u"Do you wish to continue?"_s;
    m_place.Synchronise();
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForWindow();
    EnterAndSave(program, u"7.5"_s, u"Work that will be lost"_s);
    const QStringList databases = m_place.Databases();
    EXPECT_EQ(databases.size(), 2 + 2 * 7 + 1);

    program.ChooseByKeys(u"Utilities"_s, u"Delete Databases"_s);
    program.WaitForMessage(warning);
    program.AnswerByKeys(u"Return"_s); // No is the default
    EXPECT_EQ(m_place.Databases(), databases);
    EXPECT_EQ(EntryCount(), u"1"_s);
    EXPECT_TRUE(program.IsEnabled(u"txtCustomer"_s));

    program.ChooseByKeys(u"Utilities"_s, u"Delete Databases"_s);
    program.WaitForMessage(warning);
    program.AnswerByKeys(u"Escape"_s); // so is it for who wants to get away
    EXPECT_EQ(m_place.Databases(), databases);

    program.ChooseByKeys(u"Utilities"_s, u"Delete Databases"_s);
    program.WaitForMessage(warning);
    program.AnswerByKeys(u"alt+y"_s);
    program.WaitForMessage(SynchroniseFirst);
    EXPECT_THAT(m_place.Databases(), IsEmpty());
    EXPECT_THAT(m_place.Journals(), IsEmpty());
    program.AnswerByKeys(u"Return"_s);
    EXPECT_FALSE(program.IsEnabled(u"txtCustomer"_s));

    Synchronise(program);
    EXPECT_THAT(m_place.UploadedRows(u"ABC"_s), IsEmpty());
    EXPECT_EQ(EntryCount(), u"0"_s);
    EXPECT_EQ(m_place.Databases(), databases);
    EnterAndSave(program, u"1.25"_s, u"Work afterwards"_s);
    EXPECT_EQ(EntryCount(), u"1"_s);
}
