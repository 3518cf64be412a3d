#include "bench/Limits.h"

#include <sqlite3.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <stdexcept>

namespace Limits {

namespace {

/// Bytes of a row's ten texts, at the names that a made company has.
constexpr size_t LongestRow = 256;

void Require(bool holds, const char *what)
{
    if (!holds)
        throw std::runtime_error(what);
}

std::string TextOf(sqlite3_stmt *statement, int column)
{
    const unsigned char *text = sqlite3_column_text(statement, column);
    return std::string(static_cast<const char *>(static_cast<const void *>(text)),
        static_cast<size_t>(sqlite3_column_bytes(statement, column)));
}

void ReadTable(const std::string &folder, const std::string &name, const std::string &columns,
    const std::function<void(sqlite3_stmt *)> &row)
{
    sqlite3 *database = nullptr;
    Require(sqlite3_open_v2(
                (folder + '/' + name + ".db").c_str(), &database, SQLITE_OPEN_READONLY, nullptr)
            == SQLITE_OK,
        "a database cannot be opened");
    sqlite3_stmt *statement = nullptr;
    Require(sqlite3_prepare_v2(database,
                ("SELECT " + columns + " FROM \"" + name + "\" ORDER BY rowid").c_str(), -1,
                &statement, nullptr)
            == SQLITE_OK,
        "a table cannot be read");
    while (sqlite3_step(statement) == SQLITE_ROW)
        row(statement);
    sqlite3_finalize(statement);
    sqlite3_close(database);
}

void ReadActivities(const std::string &folder, const std::string &code,
    std::unordered_map<std::string, Activity> &activities)
{
    ReadTable(folder, code + "Activities-WkLg", "Activity_Number, Description, Expense",
        [&](sqlite3_stmt *row) {
            activities.emplace(TextOf(row, 0), Activity{TextOf(row, 1), TextOf(row, 2) == "Y"});
        });
}

/// Writes into memory that is there already; the caller sees to its size.
class Writer
{
public:
    explicit Writer(Rows &rows)
        : m_rows(rows)
        , m_at(rows.Text.data())
    {
    }
    void Put(const char *text, size_t length)
    {
        std::memcpy(m_at, text, length);
        m_at += length;
    }
    void Put(const std::string &text) { Put(text.data(), text.size()); }
    void Put(char c) { *m_at++ = c; }
    void PutDigits(std::uint64_t number, int least)
    {
        char digits[20];
        char *const end = digits + sizeof digits;
        char *at = end;
        for (; number > 0 || end - at < least; number /= 10)
            *--at = static_cast<char>('0' + number % 10);
        Put(at, static_cast<size_t>(end - at));
    }
    void PutNumber(std::int64_t scaled, int decimals)
    {
        const std::uint64_t unit = decimals == 2 ? 100 : 10;
        const std::uint64_t perWhole = decimals == 2 ? 100 : 1000;
        if (scaled < 0)
            Put('-');
        const auto magnitude = static_cast<std::uint64_t>(scaled < 0 ? -scaled : scaled);
        const std::uint64_t rounded = (magnitude + unit / 2) / unit;
        PutDigits(rounded / perWhole, 0);
        Put('.');
        PutDigits(rounded % perWhole, decimals);
    }
    void End() { m_rows.Ends.push_back(static_cast<std::uint32_t>(m_at - m_rows.Text.data())); }

private:
    Rows &m_rows;
    char *m_at;
};

} // namespace

Company ReadCompany(const std::string &folder, const std::string &code)
{
    Company company;
    ReadTable(folder, code + "Entries-WkLg",
        "Customer_Number, Project_Number, Activity_Number, Date, Hours, Rate, Amount",
        [&](sqlite3_stmt *row) {
            company.Entries.push_back({TextOf(row, 0), TextOf(row, 1), TextOf(row, 2),
                TextOf(row, 3), {}, sqlite3_column_int64(row, 4), sqlite3_column_int64(row, 5),
                sqlite3_column_int64(row, 6)});
        });
    ReadTable(folder, code + "Customers-WkLg", "Customer_Number, Customer_Name",
        [&](sqlite3_stmt *row) { company.Customers.emplace(TextOf(row, 0), TextOf(row, 1)); });
    ReadTable(folder, code + "Projects-WkLg", "Customer_Number, Project_Number, Project_Name",
        [&](sqlite3_stmt *row) {
            company.Projects.emplace(TextOf(row, 0) + '\n' + TextOf(row, 1), TextOf(row, 2));
        });
    ReadActivities(folder, code, company.Activities);
    return company;
}

void Refresh(const Company &company, const Filter &filter, Rows &rows)
{
    static const std::string invalid = "*** invalid ***";
    static const std::string none;
    rows.Text.resize(company.Entries.size() * LongestRow);
    rows.Ends.clear();
    rows.Ends.reserve(company.Entries.size() * 10);
    Writer writer(rows);
    std::string key;
    std::uint32_t position = 0;
    for (const Entry &entry : company.Entries) {
        const std::uint32_t own = position++;
        if ((!filter.Customer.empty() && filter.Customer != entry.Customer)
            || (!filter.Project.empty() && filter.Project != entry.Project)
            || (!filter.Activity.empty() && filter.Activity != entry.Activity))
            continue;
        writer.PutDigits(own, 1);
        writer.End();
        const char *date = entry.Date.data();
        writer.Put(date, 4);
        writer.Put(date + 5, 2);
        writer.Put(date + 8, 2);
        writer.End();
        writer.Put(date + 5, 2);
        writer.Put('/');
        writer.Put(date + 8, 2);
        writer.Put('/');
        writer.Put(date, 4);
        writer.End();
        const auto customer = company.Customers.find(entry.Customer);
        writer.Put(customer == company.Customers.end() ? none : customer->second);
        writer.End();
        key.assign(entry.Customer).append(1, '\n').append(entry.Project);
        const auto project = company.Projects.find(key);
        writer.Put(project == company.Projects.end() ? invalid : project->second);
        writer.End();
        const auto activity = company.Activities.find(entry.Activity);
        const bool known = activity != company.Activities.end();
        writer.Put(known ? activity->second.Description : invalid);
        writer.End();
        writer.Put(known && activity->second.Expense ? 'E' : 'T');
        writer.End();
        writer.PutNumber(entry.Hours, 2);
        writer.End();
        writer.PutNumber(entry.Rate, 3);
        writer.End();
        writer.PutNumber(entry.Amount, 2);
        writer.End();
    }
}

std::unordered_map<std::string, DayTotals> Summarise(
    const std::string &folder, const std::string &code)
{
    std::unordered_map<std::string, Activity> activities;
    ReadActivities(folder, code, activities);
    std::unordered_map<std::string, DayTotals> days;
    ReadTable(folder, code + "Entries-WkLg", "Activity_Number, Date, Billing_Status, Hours, Amount",
        [&](sqlite3_stmt *row) {
            const auto activity = activities.find(TextOf(row, 0));
            if (activity != activities.end() && activity->second.Expense)
                return;
            DayTotals &day = days[TextOf(row, 1)];
            const std::string status = TextOf(row, 2);
            if (status >= "1" && status <= "3")
                day.ByStatus[static_cast<size_t>(status[0] - '1')] += sqlite3_column_int64(row, 3);
            day.Amount += sqlite3_column_int64(row, 4);
        });
    return days;
}

Inserts::Inserts(const std::string &fileName)
{
    sqlite3 *database = nullptr;
    std::remove(fileName.c_str());
    Require(sqlite3_open(fileName.c_str(), &database) == SQLITE_OK, "no file for the inserts");
    m_database = database;
    Require(sqlite3_exec(database,
                "PRAGMA journal_mode = DELETE; PRAGMA synchronous = EXTRA;"
                "CREATE TABLE Entries (Customer TEXT, Project TEXT, Activity TEXT, Date TEXT,"
                " Status TEXT, Hours INTEGER, Rate INTEGER, Amount INTEGER, Description TEXT)"
                " STRICT",
                nullptr, nullptr, nullptr)
            == SQLITE_OK,
        "no table for the inserts");
}

Inserts::~Inserts()
{
    sqlite3_close(static_cast<sqlite3 *>(m_database));
}

void Inserts::One()
{
    Require(sqlite3_exec(static_cast<sqlite3 *>(m_database),
                "INSERT INTO Entries VALUES ('C0000001', 'P0000001', 'A0001',"
                " '2026-03-09 00:00:00', '1', 75000, 950000, 7125000, 'Review for Elm Trust')",
                nullptr, nullptr, nullptr)
            == SQLITE_OK,
        "the insert failed");
}

namespace {

/// The cells of one CSV record; quotes as RFC 4180 has them. False at the end.
bool ReadRecord(const std::string &text, size_t &at, std::vector<std::string> &cells)
{
    cells.clear();
    if (at >= text.size())
        return false;
    std::string cell;
    bool quoted = false;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (quoted) {
            if (c != '"')
                cell += c;
            else if (at + 1 < text.size() && text[at + 1] == '"')
                cell += text[++at];
            else
                quoted = false;
        } else if (c == '"') {
            quoted = true;
        } else if (c == ',') {
            cells.push_back(cell);
            cell.clear();
        } else if (c == '\n') {
            ++at;
            break;
        } else if (c != '\r') {
            cell += c;
        }
    }
    cells.push_back(cell);
    return true;
}

std::string WholeFile(const std::string &name)
{
    std::ifstream file(name, std::ios::binary);
    Require(file.good(), "a CSV file cannot be read");
    file.seekg(0, std::ios::end);
    std::string text(static_cast<size_t>(file.tellg()), '\0');
    file.seekg(0);
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    return text;
}

/// The key that a table is searched by: its codes, each padded to 15.
std::string KeyOf(const std::vector<std::string> &cells, size_t codes)
{
    std::string key;
    for (size_t i = 0; i < codes; ++i) {
        key += cells[i];
        key.resize((i + 1) * 15, ' ');
    }
    return key;
}

void LoadTable(const std::string &csvFile, const std::string &databaseFile, size_t codes)
{
    const std::string text = WholeFile(csvFile);
    size_t at = 0;
    std::vector<std::string> cells;
    Require(ReadRecord(text, at, cells), "a CSV file is empty");
    std::string columns = "Table_Key TEXT";
    std::string places = "?";
    for (const std::string &name : cells) {
        columns += ", " + name + " TEXT";
        places += ", ?";
    }
    std::remove(databaseFile.c_str());
    sqlite3 *database = nullptr;
    Require(sqlite3_open(databaseFile.c_str(), &database) == SQLITE_OK, "no file to load into");
    sqlite3_exec(database, ("CREATE TABLE Loaded (" + columns + "); BEGIN").c_str(), nullptr,
        nullptr, nullptr);
    sqlite3_stmt *insert = nullptr;
    Require(sqlite3_prepare_v2(database, ("INSERT INTO Loaded VALUES (" + places + ")").c_str(), -1,
                &insert, nullptr)
            == SQLITE_OK,
        "nothing can be inserted");
    const size_t count = cells.size();
    while (ReadRecord(text, at, cells)) {
        Require(cells.size() == count, "a record has too few cells");
        const std::string key = KeyOf(cells, codes);
        sqlite3_bind_text(insert, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
        for (size_t i = 0; i < count; ++i)
            sqlite3_bind_text(insert, static_cast<int>(i) + 2, cells[i].data(),
                static_cast<int>(cells[i].size()), SQLITE_STATIC);
        sqlite3_step(insert);
        sqlite3_reset(insert);
    }
    sqlite3_finalize(insert);
    Require(sqlite3_exec(database, "COMMIT", nullptr, nullptr, nullptr) == SQLITE_OK,
        "the load cannot be committed");
    sqlite3_close(database);
}

} // namespace

void LoadCsv(const std::string &csvFolder, const std::string &databaseFolder)
{
    for (const auto &[name, codes] :
        {std::pair("Customers", size_t(1)), {"Projects", size_t(2)}, {"Activities", size_t(1)}})
        LoadTable(csvFolder + '/' + name + ".csv", databaseFolder + '/' + name + ".loaded", codes);
}

} // namespace Limits
