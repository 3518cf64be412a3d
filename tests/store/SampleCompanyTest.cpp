#include "tests/support/SampleCompany.h"
#include "store/PadKey.h"

#include <gtest/gtest.h>

#include <QFileInfo>

using namespace Qt::StringLiterals;

TEST(SampleCompany, BuildsEveryDatabaseOfACompany)
{
    SampleFolder folder;
    folder.OpenAll();
    EXPECT_EQ(folder.Tables.Company.GetRecordCount(), 1);
    EXPECT_FALSE(folder.Tables.GlobalOptions.IsOpen());
    EXPECT_EQ(folder.Tables.Options.GetRecordCount(), 1);
    EXPECT_EQ(folder.Tables.Employee.GetRecordCount(), 1);
    EXPECT_EQ(folder.Tables.Multiplier.GetRecordCount(), 3);
    EXPECT_EQ(folder.Tables.Divisions.GetRecordCount(), 2);
    EXPECT_EQ(folder.Tables.Customers.GetRecordCount(), 3);
    EXPECT_EQ(folder.Tables.Projects.GetRecordCount(), 3);
    EXPECT_EQ(folder.Tables.Activities.GetRecordCount(), 4);
    EXPECT_EQ(folder.Tables.Entries.GetRecordCount(), 0);
}

TEST(SampleCompany, DerivesTheKeysByWhichRecordsAreFound)
{
    SampleFolder folder;
    folder.OpenAll();
    EXPECT_TRUE(folder.Tables.Company.Find(0, u"ABC"_s));
    EXPECT_TRUE(folder.Tables.Multiplier.Find(0, PadKey(u"2"_s, KeyWidth::Multiplier)));
    EXPECT_TRUE(folder.Tables.Divisions.Find(0, PadKey(u"02"_s, KeyWidth::Division)));
    EXPECT_TRUE(folder.Tables.Customers.Find(0, PadKey(u"0200"_s, KeyWidth::Customer)));
    EXPECT_TRUE(folder.Tables.Projects.Find(0, ProjectKey(u"0200"_s, u"AUDIT"_s)));
    EXPECT_TRUE(folder.Tables.Activities.Find(0, PadKey(u"MILES"_s, KeyWidth::Activity)));
}

TEST(SampleCompany, TakesWhatATestIsAbout)
{
    SampleCompany first;
    first.Customers = {SampleCustomer(u"0001"_s, u"Only one"_s)};
    SampleCompany second(u"XYZ"_s, u"Xylo"_s);
    second.Entries.reset();
    GlobalOptionsRecord globals;
    globals.Last_Company = u"XYZ"_s;
    SampleFolder folder({first, second}, globals);

    folder.OpenAll();
    EXPECT_EQ(folder.Tables.Customers.GetRecordCount(), 1);
    EXPECT_EQ(folder.Tables.GlobalOptions.TakeLastCompany(), u"XYZ"_s);
    folder.OpenAll(u"XYZ"_s);
    EXPECT_EQ(folder.Tables.Company.LoadCurrentCompany(u"XYZ"_s), u"Xylo"_s);
    EXPECT_EQ(folder.Tables.Customers.GetRecordCount(), 3);
    EXPECT_FALSE(folder.Tables.Entries.IsOpen());
    EXPECT_FALSE(QFileInfo::exists(folder.Path() + u"/XYZEntries-WkLg.db"_s));
}
