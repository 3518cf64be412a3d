#include "store/FileDescription.h"

#include "store/CheckValue.h"
#include "store/StoreErrors.h"

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array RequiredColumns = {"Type_Code", "Table_Name", "Schema_Text", "Note"};
constexpr std::array CheckedColumns = {"Format_Version", "Content_Digest", "Check_Value"};
constexpr const char *CheckMark = "Has_Check_Values"; // where the records have check values

} // namespace

FileDescription::FileDescription(const QString &fileName)
    : m_fileName(fileName)
{
}

void FileDescription::Create(const SqliteFile &file) const
{
    // No row has a constant default for its checks: SQLite would give it for a row whose damaged
    // header says that the row is shorter than it is, and the checks would be off.
    file.Execute("CREATE TABLE Record_Store (Type_Code INTEGER NOT NULL, Table_Name TEXT NOT NULL, "
                 "Schema_Text TEXT NOT NULL, Note TEXT NOT NULL DEFAULT ''"
        + (HasCheckValues ? std::string(", ") + CheckMark + " TEXT NOT NULL DEFAULT 'Y'"
                          : std::string())
        + ", Format_Version INTEGER NOT NULL, Content_Digest TEXT NOT NULL DEFAULT (lower('')), "
          "Check_Value TEXT NOT NULL DEFAULT (lower(''))) STRICT");
    SqliteFile::Statement statement(file,
        "INSERT INTO Record_Store (Type_Code, Table_Name, Schema_Text, Format_Version) "
        "VALUES (?1, ?2, ?3, ?4)");
    statement.Bind(1, TypeCode);
    statement.Bind(2, TableName);
    statement.Bind(3, SchemaText);
    statement.Bind(4, m_format);
    statement.Step();
    Write(file);
}

void FileDescription::Read(const SqliteFile &file)
{
    const SqliteFile::ColumnTypes columns = file.ColumnsOf("Record_Store");
    const auto has = [&](const char *column) { return columns.contains(column); };
    if (has("Format_Version"))
        RefuseNewer(file);
    const auto checked = std::count_if(CheckedColumns.begin(), CheckedColumns.end(), has);
    if (!std::all_of(RequiredColumns.begin(), RequiredColumns.end(), has)
        || (checked != 0 && checked != std::ssize(CheckedColumns)))
        RaiseDamaged();
    m_isChecked = checked != 0;
    HasCheckValues = has(CheckMark);
    Refresh(file);
}

void FileDescription::RefuseNewer(const SqliteFile &file) const
{
    SqliteFile::Statement statement(file, "SELECT max(Format_Version) FROM Record_Store");
    if (statement.Step() && statement.Number(0) > CurrentFormat)
        RaiseStoreError(StoreErrors::NewerFormat,
            u"A newer version of Worklog Remote wrote the database: "_s + m_fileName);
}

void FileDescription::Refresh(const SqliteFile &file)
{
    SqliteFile::Statement statement(file,
        std::string("SELECT count(*), Type_Code, Table_Name, Schema_Text, Note")
            + (m_isChecked ? ", Format_Version, Content_Digest, Check_Value" : "")
            + " FROM Record_Store");
    if (!statement.Step() || statement.Number(0) != 1)
        RaiseDamaged();
    TypeCode = statement.Number(1);
    TableName = statement.Text(2);
    SchemaText = statement.Text(3);
    Note = statement.Text(4);
    if (!m_isChecked)
        return;
    m_format = statement.Number(5);
    ContentDigest = statement.Text(6);
    const std::string_view check = statement.Text(7);
    if (!statement.HasValue(6) || !statement.HasValue(7)
        || (!check.empty() && check != CheckText()))
        RaiseDamaged();
}

void FileDescription::Write(const SqliteFile &file) const
{
    SqliteFile::Statement statement(file,
        m_isChecked ? "UPDATE Record_Store SET Note = ?1, Content_Digest = ?2, Check_Value = ?3"
                    : "UPDATE Record_Store SET Note = ?1");
    statement.Bind(1, Note);
    if (m_isChecked) {
        statement.Bind(2, ContentDigest);
        statement.Bind(3, CheckText());
    }
    statement.Step();
}

std::string FileDescription::CheckText() const
{
    CheckValue value;
    value.Add(TypeCode);
    value.Add(TableName);
    value.Add(SchemaText);
    value.Add(Note);
    value.Add(m_format);
    value.Add(ContentDigest);
    const CheckValue::Digits digits = value.Hexadecimal();
    return {digits.begin(), digits.end()};
}

void FileDescription::RaiseDamaged() const
{
    RaiseStoreError(StoreErrors::Damaged,
        u"What the database says about itself is not as it was written: "_s + m_fileName);
}
