// The document about the databases names every table with every column, as the program has them.

#include "store/DatabaseNames.h"
#include "store/Records.h"
#include "store/RecordStore.h"
#include "store/Schema.h"
#include "tests/support/PrintQt.h"
#include "tests/support/SampleCompany.h"

#include <QFile>
#include <QRegularExpression>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

QString Document()
{
    QFile file(QStringLiteral(WORKLOG_SOURCES "/docs/data-interface.md"));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return QString::fromUtf8(file.readAll());
}

struct Table
{
    QStringView Prefix;
    QStringView SchemaText;
};

std::vector<Table> AllTables()
{
    return {{DatabasePrefix::Company, CompanyRecord::SchemaText},
        {DatabasePrefix::GlobalOptions, GlobalOptionsRecord::SchemaText},
        {DatabasePrefix::Options, OptionsRecord::SchemaText},
        {DatabasePrefix::Employee, EmployeeRecord::SchemaText},
        {DatabasePrefix::Multiplier, MultiplierRecord::SchemaText},
        {DatabasePrefix::Divisions, DivisionRecord::SchemaText},
        {DatabasePrefix::Customers, CustomerRecord::SchemaText},
        {DatabasePrefix::Projects, ProjectRecord::SchemaText},
        {DatabasePrefix::Activities, ActivityRecord::SchemaText},
        {DatabasePrefix::Entries, EntryRecord::SchemaText},
        {DatabasePrefix::HoursSummary, HoursSummaryRecord::SchemaText}};
}

QString TypeName(FieldType type)
{
    return type == FieldType::String ? u"String"_s
        : type == FieldType::Date    ? u"Date"_s
                                     : u"Currency"_s;
}

/// "Field Type" for each column that a section of the document lists.
QStringList ColumnsIn(const QString &section)
{
    QStringList columns;
    const QRegularExpression row(
        u"^\\| `(\\w+)` \\| (\\w+) \\|"_s, QRegularExpression::MultilineOption);
    for (auto match = row.globalMatch(section); match.hasNext();) {
        const auto found = match.next();
        columns.append(found.captured(1) + u' ' + found.captured(2));
    }
    return columns;
}

} // namespace

TEST(DataInterfaceDocument, ListsTheColumnsOfEveryTableInTheirOrder)
{
    QMap<QString, QStringList> documented;
    for (const QString &section : Document().section(u"## Tables"_s, 1).split(u"\n### "_s).mid(1))
        documented[section.section(u'\n', 0, 0)] = ColumnsIn(section);
    for (const Table &table : AllTables()) {
        QStringList columns;
        for (const SchemaField &field : ParseSchema(table.SchemaText))
            columns.append(field.Name + u' ' + TypeName(field.Type));
        const QString name = table.Prefix.chopped(1).toString();
        EXPECT_EQ(documented.take(name), columns) << name.toStdString();
    }
    EXPECT_THAT(documented.keys(), testing::IsEmpty());
}

TEST(DataInterfaceDocument, NamesEveryFileAndTheNumbersOfTheCodes)
{
    const QString text = Document();
    for (const Table &table : AllTables())
        EXPECT_TRUE(text.contains(table.Prefix.toString() + u"WkLg.db"_s));
    EXPECT_TRUE(text.contains(QString::number(CodeNumber(SampleCodes().Creator))));
    EXPECT_TRUE(text.contains(QString::number(CodeNumber(SampleCodes().Type))));
}
