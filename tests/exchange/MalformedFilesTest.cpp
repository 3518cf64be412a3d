#include "tests/exchange/Installation.h"

#include <gtest/gtest.h>

#include <QDir>

#include <vector>

using namespace Qt::StringLiterals;

namespace {

/// A fault put into one file, the line on which it is to be found, and words of the message.
struct Fault
{
    const char *Name;
    const char *File;
    const char *Old; ///< empty: `Now` is the whole file
    const char *Now;
    int Line;
    const char *Words;
};

void PrintTo(const Fault &fault, std::ostream *out)
{
    *out << fault.Name;
}

/// Each of the faults, or one in so many.
std::vector<Fault> OneIn(size_t step, const std::vector<Fault> &faults)
{
    std::vector<Fault> some;
    for (size_t i = 0; i < faults.size(); i += step)
        some.push_back(faults[i]);
    return some;
}

class MalformedFile : public testing::TestWithParam<Fault>
{
};

TEST_P(MalformedFile, IsNamedWithItsLineAndNothingHasChanged)
{
    const Fault &fault = GetParam();
    const QString file = QString::fromUtf8(fault.File);
    const Installation place;
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    const QByteArray sound = place.Read(file);
    if (*fault.Old == '\0')
        place.Write(file, fault.Now);
    else
        place.Replace(file, fault.Old, fault.Now);
    const QMap<QString, QByteArray> before = place.LocalFiles();

    const Outcome outcome = place.Synchronise();

    EXPECT_EQ(outcome.ExitStatus, 1);
    const QString expected
        = QDir::toNativeSeparators(file) + u", line "_s + QString::number(fault.Line) + u": "_s;
    EXPECT_TRUE(outcome.Errors.contains(expected)) << qPrintable(outcome.Errors);
    EXPECT_TRUE(outcome.Errors.contains(QString::fromUtf8(fault.Words)))
        << qPrintable(outcome.Errors);
    EXPECT_TRUE(place.Log().contains(u"Error: "_s));
    EXPECT_TRUE(place.Log().contains(expected)) << qPrintable(place.Log());
    EXPECT_EQ(place.LocalFiles(), before);
    EXPECT_TRUE(place.Uploads(u"ABC"_s).isEmpty());

    place.Write(file, sound);
    EXPECT_EQ(place.Synchronise().ExitStatus, 0);
    EXPECT_EQ(place.Uploads(u"ABC"_s).size(), 1);
}

INSTANTIATE_TEST_SUITE_P(Kinds, MalformedFile,
    testing::ValuesIn(OneIn(TRIED_FAULTS,
        {Fault{"MissingColumn", "ABC/Customers.csv", "",
             "Customer_Number,Customer_Name,Division_Number,No_Charge\n", 1, "\"Rate\" is missing"},
            Fault{"UnknownColumn", "ABC/Customers.csv", ",Rate", ",Rate,Colour", 1,
                "\"Colour\" is unknown"},
            Fault{"ColumnTwice", "ABC/Customers.csv", ",Rate", ",Rate,Rate", 1,
                "\"Rate\" is there twice"},
            Fault{"ColumnInOtherCase", "ABC/Customers.csv", ",Rate", ",RATE", 1,
                "\"RATE\" is unknown"},
            Fault{"KeyColumn", "ABC/Customers.csv", ",Rate", ",Rate,Customer_Key", 1,
                "\"Customer_Key\" is unknown"},
            Fault{"NoHeader", "ABC/Divisions.csv", "", "", 1, "no header"},
            Fault{"TooFewCells", "ABC/Customers.csv", "Acme,01,N,95", "Acme,01,N", 2, "4 cells"},
            Fault{
                "TooManyCells", "ABC/Customers.csv", "Acme,01,N,95", "Acme,01,N,95,", 2, "6 cells"},
            Fault{"DecimalComma", "ABC/Customers.csv", "N,95", "N,\"9,5\"", 2,
                "\"9,5\" is no number"},
            Fault{"NumberWithLetters", "ABC/Employee.csv", "84.5", "84.5 EUR", 2, "is no number"},
            Fault{"EmptyNumber", "ABC/Divisions.csv", "88.25", "", 2, "\"\" is no number"},
            Fault{"FiveDecimals", "ABC/Multiplier.csv", "1.5", "1.50000", 2, "is no number"},
            Fault{"NegativeRate", "ABC/Projects.csv", "Ledger,0", "Ledger,-1", 2, "is no number"},
            Fault{"HugeNumber", "ABC/Projects.csv", "Ledger,0", "Ledger,1000000000", 2,
                "is no number"},
            Fault{"BadFlag", "ABC/Customers.csv", "01,N", "01,yes", 2, "No_Charge: \"yes\""},
            Fault{"EmptyFlag", "ABC/Activities.csv", "Consulting,N,N", "Consulting,N,", 2,
                "No_Charge: \"\""},
            Fault{
                "BadRatePermission", "ABC/Employee.csv", "Y,4", "Y,5", 2, "Rate_Permission: \"5\""},
            Fault{"BadBillingOption", "ABC/Options.csv", "Employee,5", "Employee,7", 2,
                "Billing_Option_Setting: \"7\""},
            Fault{"BadSyncOption", "ABC/Options.csv", "Ledger,0", "Ledger,4", 2,
                "Sync_Option: \"4\""},
            Fault{"BadBillingStatus", "ABC/Activities.csv", "120,0,1", "120,0,0", 2,
                "Dflt_Billing_Status: \"0\""},
            Fault{"CustomerTwice", "ABC/Customers.csv", "0200", "0100", 3, "already, on line 2"},
            Fault{"ProjectTwice", "ABC/Projects.csv", "Ledger,0\n", "Ledger,0\n0100,1000,Again,0\n",
                3, "already, on line 2"},
            Fault{"ProjectTwiceWithOthersBetween", "ABC/Projects.csv", "Ledger,0\n",
                "Ledger,0\n0100,2000,Two,0\n0100,3000,Three,0\n0100,1000,Again,0\n", 5,
                "already, on line 2"},
            Fault{
                "ActivityTwice", "ABC/Activities.csv", "MEALS", "CONSULT", 3, "already, on line 2"},
            Fault{"DivisionTwice", "ABC/Divisions.csv", "88.25\n", "88.25\n01,Again,0\n", 3,
                "already, on line 2"},
            Fault{"MultiplierTwice", "ABC/Multiplier.csv", "1.5\n", "1.5\n02,Again,2\n", 3,
                "already, on line 2"},
            Fault{"CustomerTooLong", "ABC/Customers.csv", "0200", "1234567890123456", 3,
                "longer than 15"},
            Fault{"ProjectTooLong", "ABC/Projects.csv", "1000", "1234567890123456", 2,
                "longer than 15"},
            Fault{"ActivityTooLong", "ABC/Activities.csv", "MEALS", "1234567890123456", 3,
                "longer than 15"},
            Fault{"DivisionTooLong", "ABC/Divisions.csv", "01", "001", 2, "longer than 2"},
            Fault{"MultiplierTooLong", "ABC/Multiplier.csv", "02", "002", 2, "longer than 2"},
            Fault{"EmployeeTooLong", "ABC/Employee.csv", "007", "0007", 2, "longer than 3"},
            Fault{"EmptyCode", "ABC/Customers.csv", "0200,", ",", 3, "the code is empty"},
            Fault{"CodeOfBlanks", "ABC/Customers.csv", "0200", "02 ", 3, "ends with a space"},
            Fault{"LowerCaseCode", "ABC/Activities.csv", "MEALS", "Meals", 3, "write \"MEALS\""},
            Fault{"LowerCaseCustomer", "ABC/Customers.csv", "0200", "a200", 3, "cannot be typed"},
            Fault{"CodesOfOtherCase", "ABC/Customers.csv", "0100,Acme,01,N,95\n0200",
                "0100,Acme,01,N,95\nÄ,Wald,,N,0\nä", 4, "already, on line 3, with letters"},
            Fault{"DivisionsOfOtherCase", "ABC/Divisions.csv", "88.25\n", "88.25\nN,A,0\nn,B,0\n",
                4, "already, on line 3, with letters"},
            Fault{"ZeroWidthCode", "ABC/Customers.csv", "0200", "02\xE2\x80\x8B\x30\x30", 3,
                "invisible character U+200B"},
            Fault{"NoBreakSpaceCode", "ABC/Activities.csv", "MEALS", "ME\xC2\xA0S", 3,
                "invisible character U+00A0"},
            Fault{"BidiCode", "ABC/Projects.csv", "1000", "1\xE2\x80\xAE\x30", 2,
                "invisible character U+202E"},
            Fault{"EmptyTerm", "ABC/Options.csv", "Customer,Project,A", ",Project,A", 2,
                "Customer_Term: the term is empty"},
            Fault{"EqualTerms", "ABC/Options.csv", "Customer,Project,A", "Project,project ,A", 2,
                "two of the terms are \"project \""},
            Fault{"LongTerm", "ABC/Options.csv", "Customer,Project,A",
                "Customer,A project whose name is longer than forty,A", 2, "longer than 40"},
            Fault{"ReservedCompanyCode", "Company.csv", "ABC,", "aux,", 2,
                "cannot be a part of a file's"},
            Fault{"UnknownCustomer", "ABC/Projects.csv", "0100", "0300", 2,
                "\"0300\" is not among the customers"},
            Fault{"UnknownDivision", "ABC/Customers.csv", "Acme,01", "Acme,02", 2,
                "\"02\" is not among the divisions"},
            Fault{"NotUtf8", "ABC/Customers.csv", "Br\xC3\xBCnnhof", "Br\xFCnnhof", 3, "not UTF-8"},
            Fault{"UnclosedQuote", "ABC/Customers.csv", "Acme,", "\"Acme,", 2, "never closed"},
            Fault{"QuoteInside", "ABC/Customers.csv", "Acme", "Ac\"me", 2, "quote stands inside"},
            Fault{"TextBehindQuote", "ABC/Customers.csv", "Acme", "\"Acme\"x", 2,
                "behind the closing quote"},
            Fault{
                "CarriageReturnAlone", "ABC/Customers.csv", "Acme", "Ac\rme", 2, "carriage return"},
            Fault{"NoOptions", "ABC/Options.csv",
                "Customer,Project,Activity,Employee,5,Y,N,N,Y,Y,Y,N,Ledger,0\n", "", 2,
                "no record"},
            Fault{"TwoEmployees", "ABC/Employee.csv", "84.5\n", "84.5\n008,Bea,N,N,Y,1,0\n", 3,
                "more than the one record"},
            Fault{"BadCompanyCode", "Company.csv", "ABC,", "../ABC,", 2,
                "cannot be a part of a file's"},
            Fault{
                "CompanyCodeDots", "Company.csv", "ABC,", "..,", 2, "cannot be a part of a file's"},
            Fault{"CompanyTwice", "Company.csv", "ABC\n", "ABC\nabc,Again\n", 3,
                "already, on line 2"},
            Fault{
                "NoCompany", "Company.csv", "", "Company_Code,Company_Name\n", 2, "no company"}})),
    [](const auto &example) { return std::string(example.param.Name); });

TEST(MissingFile, IsNamedAndNothingHasChanged)
{
    for (const QString &file : {u"Company.csv"_s, u"ABC/Options.csv"_s, u"ABC/Employee.csv"_s,
             u"ABC/Multiplier.csv"_s, u"ABC/Divisions.csv"_s, u"ABC/Customers.csv"_s,
             u"ABC/Projects.csv"_s, u"ABC/Activities.csv"_s}) {
        const Installation place;
        ASSERT_EQ(place.Synchronise().ExitStatus, 0);
        const QMap<QString, QByteArray> before = place.LocalFiles();
        ASSERT_TRUE(QFile::remove(place.Worklog + u'/' + file));
        const Outcome outcome = place.Synchronise();
        EXPECT_EQ(outcome.ExitStatus, 1);
        EXPECT_TRUE(
            outcome.Errors.contains(QDir::toNativeSeparators(file) + u": the file is missing"_s))
            << qPrintable(outcome.Errors);
        EXPECT_EQ(place.LocalFiles(), before);
    }
}

TEST(MalformedFiles, OfASecondCompanyLeavesTheFirstAlone)
{
    Installation place;
    place.AddCompany(u"TWO"_s);
    ASSERT_EQ(place.Synchronise().ExitStatus, 0);
    place.PutEntries(u"ABC"_s, {EntryNumber(1)});
    place.Replace(u"TWO/Activities.csv"_s, "MEALS,Meals,Y", "MEALS,Meals,X");
    const QMap<QString, QByteArray> before = place.LocalFiles();
    EXPECT_EQ(place.Synchronise().ExitStatus, 1);
    EXPECT_EQ(place.LocalFiles(), before);
    EXPECT_TRUE(place.Uploads(u"ABC"_s).isEmpty());
}

TEST(MalformedFiles, OnAFirstSynchronisationLeavesAnEmptyFolder)
{
    const Installation place;
    place.Replace(u"ABC/Activities.csv"_s, "MEALS,Meals,Y", "MEALS,Meals,X");
    EXPECT_EQ(place.Synchronise().ExitStatus, 1);
    EXPECT_TRUE(place.LocalFiles().isEmpty());
}

} // namespace
