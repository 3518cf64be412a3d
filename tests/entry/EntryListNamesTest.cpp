// Whose names the list shows for an entry's codes, also when the data below it becomes another.

#include "tests/entry/EntryListWindow.h"
#include "tests/entry/OtherProgram.h"

#include <QAbstractItemView>
#include <QDir>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

class EntryListNames : public EntryListWindow
{
protected:
    /// A second company with the codes of the first, all of other names.
    static SampleCompany Other()
    {
        SampleCompany other(u"XYZ"_s, u"Xylo"_s);
        for (CustomerRecord &customer : other.Customers)
            customer.Customer_Name = u"Xylo's "_s + customer.Customer_Name;
        for (ProjectRecord &project : other.Projects)
            project.Project_Name = u"Xylo's "_s + project.Project_Name;
        for (ActivityRecord &activity : other.Activities)
            activity.Description = u"Xylo's "_s + activity.Description;
        return other;
    }

    /// Opens the list of companies and goes up or down by one.
    void ChooseCompany(Qt::Key key)
    {
        QComboBox &list = List("cboCompany");
        GoTo("cboCompany");
        Press(Qt::Key_Down);
        ASSERT_NE(QApplication::activePopupWidget(), nullptr);
        QTest::keyClick(list.view(), key);
        QTest::keyClick(list.view(), Qt::Key_Return);
        LetEventsRun();
    }

    /// An accounting installation, so that a synchronization reaches the client.
    void MakeInstallation()
    {
        const QString root = Folder.path() + u"/mas90"_s;
        QDir().mkpath(root + u"/soa"_s);
        QDir().mkpath(root + u"/Home"_s);
        Write(root + u"/soa/startup.m4p"_s, {});
        Write(root + u"/Home/pvxwin32.exe"_s, {});
        Write(Folder.path() + u"/mas90.ini"_s, (root + u"\n-ARG X\n"_s).toUtf8());
    }

    void Execute(const QString &database, const char *sql)
    {
        OtherProgram(Folder.path() + u'/' + database + u".db"_s).Execute(sql);
    }

private:
    static void Write(const QString &fileName, const QByteArray &text)
    {
        QFile file(fileName);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }
};

} // namespace

TEST_F(EntryListNames, CustomersWithAProjectOfTheSameCodeShowTheirOwn)
{
    Company.Projects.push_back(SampleProject(u"0300"_s, u"AUDIT"_s, u"Audit of the crater"_s));
    for (const char *customer : {"0100", "0200", "0300", "0200", "0100", "0300"})
        Add(u"CONS"_s, Monday, "1", QString::fromLatin1(customer), u"AUDIT"_s);
    Add(u"CONS"_s, Monday, "1", u"0200"_s, u"MOVE"_s);
    Add(u"CONS"_s, Monday, "1", u"0100"_s, u"MOVE"_s);
    StartList();
    EXPECT_THAT(Column(EntryColumn::Project),
        ElementsAre(u"Yearly audit"_s, u"Audit of the mill"_s, u"Audit of the crater"_s,
            u"Audit of the mill"_s, u"Yearly audit"_s, u"Audit of the crater"_s,
            u"*** invalid ***"_s, u"Office move"_s));
}

TEST_F(EntryListNames, AnotherCompanyShowsItsOwnNames)
{
    Add(u"CONS"_s, Monday, "1");
    Add(u"TRAIN"_s, Monday, "2", u"0200"_s);
    SampleCompany other = Other();
    other.Entries = Company.Entries;
    Others = {other};
    StartList();
    const auto expectNames = [this](const QString &prefix) {
        EXPECT_THAT(Column(EntryColumn::Customer),
            ElementsAre(prefix + u"Acme"_s, prefix + u"Brightwater Ltd"_s));
        EXPECT_THAT(Column(EntryColumn::Project),
            ElementsAre(prefix + u"Yearly audit"_s, prefix + u"Audit of the mill"_s));
        EXPECT_THAT(Column(EntryColumn::Activity),
            ElementsAre(prefix + u"Consulting"_s, prefix + u"Training"_s));
    };
    expectNames({});
    ChooseCompany(Qt::Key_Down);
    ASSERT_EQ(Panel(3), u"XYZ"_s);
    expectNames(u"Xylo's "_s);
    ChooseCompany(Qt::Key_Up);
    ASSERT_EQ(Panel(3), u"ABC"_s);
    expectNames({});
}

TEST_F(EntryListNames, AnotherCompanysListBeginsWithItsFirstRow)
{
    AddHours({"1", "2", "3"});
    SampleCompany other = Other();
    other.Entries = Company.Entries;
    Others = {other};
    StartList();
    ClickCell(3, Qt::LeftButton);
    ClickButton("cmdUndo");
    ChooseCompany(Qt::Key_Down);
    ASSERT_EQ(Panel(3), u"XYZ"_s);
    ExpectNoRow();
    PressInList(Qt::Key_Down);
    ExpectLoaded(1, 0);
}

TEST_F(EntryListNames, ASynchronizationThatRenamesShowsTheNewNames)
{
    MakeInstallation();
    Add(u"CONS"_s, Monday, "1");
    StartList();
    ASSERT_EQ(Column(EntryColumn::Customer), QStringList{u"Acme"_s});
    Process.Work = [this] {
        Execute(u"ABCCustomers-WkLg"_s,
            "UPDATE \"ABCCustomers-WkLg\" SET Customer_Name = 'Acme & Sons'");
        Execute(u"ABCProjects-WkLg"_s,
            "UPDATE \"ABCProjects-WkLg\" SET Project_Name = 'Audit ' || Customer_Number");
        Execute(
            u"ABCActivities-WkLg"_s, "UPDATE \"ABCActivities-WkLg\" SET Description = 'Advice'");
    };
    ClickButton("cmdSync");
    ASSERT_EQ(Process.Programs.size(), 1);
    EXPECT_EQ(Column(EntryColumn::Customer), QStringList{u"Acme & Sons"_s});
    EXPECT_EQ(Column(EntryColumn::Project), QStringList{u"Audit 0100"_s});
    EXPECT_EQ(Column(EntryColumn::Activity), QStringList{u"Advice"_s});
}
