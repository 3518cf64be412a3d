// Reference data and entries with anything in them: shown as the texts that they are, in every
// window, and never outside of the program folder.

#include "entry/EntryColumn.h"
#include "platform/clsGrid.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/Windows.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ctime>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

QStringList HostileTexts()
{
    QString controls;
    for (char16_t c = 1; c < 32; ++c)
        controls += c;
    return {u"<b>bold</b><img src='file:///x'><a href=\"x\">y</a>"_s, u"&File && &x &"_s,
        u"%1 %2 %s %n %d %% %L1"_s, u"'; DROP TABLE \"ABCEntries-WkLg\"; --"_s,
        u"\"double\" 'single' `back` \\"_s, u"\u202Eright to left\u200B\u200F\u2066\uFEFF"_s,
        QString::fromUtf16(u"a\0b", 3), controls, u"     "_s, u"two\nlines\r\nand\ttab"_s,
        u"\u2028\u2029\u0085"_s, QString(QChar(0xD800)), u"😀 e\u0301\u0301\u0301 ﷽"_s,
        u"$(touch x); `id` | & ../../x"_s, u"{TAB}{F1}%{F4}^c+"_s, u"*** invalid ***"_s,
        u"yyyy-MM-dd"_s, u"-1e999"_s, u"0"_s, QString()};
}

/// A company in which every text that is no code is this one, and every flag and status too.
SampleCompany Filled(const QString &text)
{
    SampleCompany company(u"ABC"_s, text);
    for (QString *member : {&company.Options.Customer_Term, &company.Options.Project_Term,
             &company.Options.Activity_Term, &company.Options.Employee_Term,
             &company.Options.Accounting_Name, &company.Options.Mgmt_Approval_In_Use,
             &company.Options.Lock_Approved, &company.Options.Billing_Option_Setting,
             &company.Options.On_Hold_In_Use, &company.Options.Sync_Option,
             &company.Employee.Employee_Name, &company.Employee.Employee_Number,
             &company.Employee.Approval})
        *member = text;
    company.Options.Billing_Option_Switch = u"Y"_s;
    company.Employee.Rate_Permission = u"4"_s;
    for (MultiplierRecord &record : company.Multipliers)
        record.Description = text;
    for (DivisionRecord &record : company.Divisions)
        record.Division_Name = text;
    for (CustomerRecord &record : company.Customers)
        record.Customer_Name = record.Division_Number = record.No_Charge = text;
    for (ProjectRecord &record : company.Projects)
        record.Project_Name = text;
    for (ActivityRecord &record : company.Activities)
        record.Description = record.Dflt_Billing_Status = record.No_Charge = text;
    company.Customers.push_back(SampleCustomer(u"0100"_s, text)); // twice the same
    company.Customers.push_back(SampleCustomer(text, text));
    company.Projects.push_back(SampleProject(text, text, text)); // of no customer, perhaps
    company.Activities.push_back(SampleActivity(text, text));
    EntryRecord entry = SampleEntry(
        u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(2), {}, text);
    company.Entries = {entry};
    for (QString EntryRecord::*member :
        {&EntryRecord::Customer_Number, &EntryRecord::Project_Number, &EntryRecord::Activity_Number,
            &EntryRecord::Billing_Status, &EntryRecord::Mgmt_Approval, &EntryRecord::Sec_Approval,
            &EntryRecord::On_Hold, &EntryRecord::Billing_Option, &EntryRecord::Multiplier_Number,
            &EntryRecord::Rate_Overridden, &EntryRecord::Reimburse}) {
        EntryRecord odd = entry;
        odd.*member = text;
        company.Entries->push_back(odd);
    }
    company.Entries->push_back(EntryRecord());
    return company;
}

/// Whether a tool tip shows its text as it is: it has no markup, or all of it is escaped.
bool IsPlain(const QString &tip)
{
    if (!Qt::mightBeRichText(tip))
        return true;
    const QString start = u"<span>"_s;
    const QString end = u"</span>"_s;
    return tip.startsWith(start) && tip.endsWith(end)
        && !tip.sliced(start.size()).chopped(end.size()).contains(u'<');
}

class HostileData : public testing::Test
{
protected:
    QString Folder() const { return m_place.filePath(u"program"_s); }

    void Build(const std::vector<SampleCompany> &companies, const QString &last = u"ABC"_s)
    {
        QDir(Folder()).removeRecursively();
        QDir().mkpath(Folder());
        GlobalOptionsRecord options;
        options.Last_Company = last;
        BuildSampleCompanies(Folder(), companies, options);
    }

    /// Nothing on the screen takes a text for markup or for a shortcut.
    static void LookAt(const QWidget &window)
    {
        EXPECT_LT(window.width(), 2000) << window.objectName().toStdString();
        for (const QWidget *widget : window.findChildren<QWidget *>()) {
            const std::string name = widget->objectName().toStdString();
            EXPECT_TRUE(IsPlain(widget->toolTip())) << name << widget->toolTip().toStdString();
            if (const auto *label = qobject_cast<const QLabel *>(widget)) {
                EXPECT_TRUE(
                    label->textFormat() == Qt::PlainText || !Qt::mightBeRichText(label->text()))
                    << name << ": " << label->text().toStdString();
                EXPECT_FALSE(label->openExternalLinks()) << name;
            }
        }
    }

    /// Every window of the program, and every row and header of the list.
    static void UseEverything(ProgramOnDisk &program)
    {
        LookAt(*program.Window());
        program.LookAtDialog = [](QWidget &dialog) { LookAt(dialog); };
        auto &grid = Control<clsGrid>(*program.Window(), "msgEntryList");
        for (int row = 1; row < grid.Rows(); ++row) {
            program.ClickRow(row);
            LookAt(*program.Window());
        }
        for (int column = EntryColumn::Date; column < EntryColumn::Count; ++column) {
            QHeaderView &header = *grid.horizontalHeader();
            QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
                {header.sectionViewportPosition(column) + 5, header.height() / 2});
            LetEventsRun();
        }
        program.Click("cmdUndo");
        for (const char *button :
            {"cmdHrsSumm", "cmdTransFilter", "cmdCustomer", "cmdProject", "cmdActivity"}) {
            if (Control<QWidget>(*program.Window(), button).isEnabled())
                program.CloseDialogOf([&] { program.Click(button); });
        }
        for (const char *entry : {"mnuSync", "mnuConfigure"})
            program.CloseDialogOf([&] { Control<QAction>(*program.Window(), entry).trigger(); });
        program.Click("cmdUndo");
    }

    QTemporaryDir m_place{SampleFolderTemplate()};
};

} // namespace

TEST_F(HostileData, IsShownAsTheTextThatItIsInEveryWindow)
{
    for (const QString &text : HostileTexts()) {
        SCOPED_TRACE(text.toStdString());
        Build({Filled(text)});
        const std::vector<EntryRecord> before = StoredEntries(Folder());
        ProgramOnDisk program(Folder());
        program.StartUp();
        ASSERT_NE(program.Window(), nullptr) << program.Failures().join(u'|').toStdString();
        auto &grid = Control<clsGrid>(*program.Window(), "msgEntryList");
        // Half of a character is none in a file.
        const QString shown = QString::fromUtf8(text.toUtf8());
        EXPECT_EQ(grid.TextMatrix(1, EntryColumn::Activity), shown);
        EXPECT_EQ(grid.TextMatrix(1, EntryColumn::Project), shown);
        UseEverything(program);
        program.ClickRow(1);
        EXPECT_EQ(Control<QLabel>(*program.Window(), "lblCompanyName").text(), shown);
        EXPECT_EQ(StoredEntries(Folder()), before); // to look at an entry changes nothing
    }
}

TEST_F(HostileData, OfAMillionCharactersIsShownAndKept)
{
    const QString text(1'000'000, u'W');
    SampleCompany company;
    company.Entries = ProgramOnDisk::MadeEntries();
    company.Entries->at(0).Project_Number = u"AUDIT"_s;
    company.Options.Accounting_Name = company.Options.Project_Term = text;
    company.Employee.Employee_Name = text;
    company.Name = text;
    company.Customers[0].Customer_Name = text;
    company.Projects[0].Project_Name = text;
    company.Activities[0].Description = text;
    company.Options.Customer_Term = text;
    company.Entries->at(0).Description = text;
    company.Entries->at(1).Customer_Number = text;
    Build({company});
    const std::vector<EntryRecord> before = StoredEntries(Folder());
    const std::clock_t started = std::clock();
    ProgramOnDisk program(Folder());
    program.StartUp();
    ASSERT_NE(program.Window(), nullptr) << program.Failures().join(u'|').toStdString();
    auto &grid = Control<clsGrid>(*program.Window(), "msgEntryList");
    EXPECT_EQ(grid.TextMatrix(1, EntryColumn::Activity), text);
    UseEverything(program);
    EXPECT_EQ(StoredEntries(Folder()), before);
    // Laid out in full the texts take minutes of this process's own time.
    EXPECT_LT((std::clock() - started) / CLOCKS_PER_SEC, 40);
}

TEST_F(HostileData, EmptyTablesAreNoEntriesAndNoCodes)
{
    SampleCompany company;
    company.Multipliers.clear();
    company.Divisions.clear();
    company.Customers.clear();
    company.Projects.clear();
    company.Activities.clear();
    company.Entries = {
        SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(2))};
    Build({company});
    ProgramOnDisk program(Folder());
    program.StartUp();
    ASSERT_NE(program.Window(), nullptr);
    UseEverything(program);
    EXPECT_EQ(StoredEntries(Folder()), *company.Entries);
}

TEST_F(HostileData, OptionsAndEmployeesWithoutARecordAreToldOrEmpty)
{
    for (const char *name : {"ABCOptions-WkLg", "ABCEmployee-WkLg", "Company-WkLg"}) {
        SCOPED_TRACE(name);
        Build({SampleCompany()});
        const QString file = Folder() + u'/' + QString::fromLatin1(name) + u".db"_s;
        ASSERT_TRUE(QFile::remove(file));
        const QString database = QString::fromLatin1(name);
        if (database.contains(u"Options"_s))
            BuildDatabase<OptionsRecord>(Folder(), database, {});
        else if (database.contains(u"Employee"_s))
            BuildDatabase<EmployeeRecord>(Folder(), database, {});
        else
            BuildDatabase<CompanyRecord>(Folder(), database, {});
        ProgramOnDisk program(Folder());
        program.StartUp();
        EXPECT_TRUE(program.Window() != nullptr || !program.Failures().isEmpty());
        if (program.Window() != nullptr)
            LookAt(*program.Window());
    }
}

TEST_F(HostileData, ACompanyCodeNeverReachesOutsideTheProgramFolder)
{
    // What such a code would reach: databases that lie beside the program's own folder.
    const QString outside = m_place.path();
    BuildSampleCompanies(outside, {SampleCompany(u"evil"_s)});
    const auto everything = [&] {
        QMap<QString, QByteArray> files;
        for (const QString &name : QDir(outside).entryList(QDir::Files)) {
            QFile file(outside + u'/' + name);
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            files[name] = file.readAll();
        }
        return files;
    };
    const QMap<QString, QByteArray> before = everything();
    for (const QString &code :
        {u"../evil"_s, u"..\\evil"_s, outside + u"/evil"_s, u"a/../../evil"_s,
            QString::fromUtf16(u"../evil\0", 8), u"./../evil"_s, u"a/b"_s, u".."_s, u"/"_s}) {
        SCOPED_TRACE(code.toStdString());
        std::vector<CompanyRecord> listed
            = {SampleCompanyRecord(u"ABC"_s, u"Abacus"_s), SampleCompanyRecord(code, u"Evil"_s)};
        Build({SampleCompany()}, code);
        ASSERT_TRUE(QFile::remove(Folder() + u"/Company-WkLg.db"_s));
        BuildDatabase(Folder(), u"Company-WkLg"_s, listed);
        {
            ProgramOnDisk program(Folder());
            program.StartUp();
            // Asks for a synchronisation, as for any company whose databases are not there.
            EXPECT_THAT(program.Messages.Texts(),
                testing::ElementsAre(u"Please perform a synchronization first."_s));
            program.Messages.Answers = {MessageAnswer::Yes};
            ASSERT_NE(program.Window(), nullptr);
            Control<QAction>(*program.Window(), "mnuDeleteDatabases").trigger();
            LetEventsRun();
        }
        EXPECT_EQ(everything(), before);
        EXPECT_THAT(QDir(Folder()).entryList({u"*.db"_s}), IsEmpty());
        EXPECT_THAT(QDir(outside).entryList({u"program"_s}, QDir::Dirs).size(), 1);
    }
}
