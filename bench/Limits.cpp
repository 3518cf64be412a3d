#include "bench/Limits.h"

#include <sqlite3.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <stdexcept>

namespace Limits {

namespace {

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

void PutDigits(std::string &text, std::uint64_t number, int least)
{
    std::array<char, 20> digits;
    size_t at = digits.size();
    while (number > 0 || static_cast<int>(digits.size() - at) < least) {
        digits[--at] = static_cast<char>('0' + number % 10);
        number /= 10;
    }
    text.append(digits.data() + at, digits.size() - at);
}

void PutNumber(std::string &text, std::int64_t scaled, int decimals)
{
    const std::uint64_t unit = decimals == 2 ? 100 : 10;
    const std::uint64_t perWhole = 10000 / unit;
    if (scaled < 0)
        text += '-';
    const auto magnitude = static_cast<std::uint64_t>(scaled < 0 ? -scaled : scaled);
    const std::uint64_t rounded = (magnitude + unit / 2) / unit;
    PutDigits(text, rounded / perWhole, 0);
    text += '.';
    PutDigits(text, rounded % perWhole, decimals);
}

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

Rows Refresh(const Company &company, const Filter &filter)
{
    Rows rows;
    rows.Ends.reserve(company.Entries.size() * 10);
    std::string key;
    std::uint32_t position = 0;
    for (const Entry &entry : company.Entries) {
        const std::uint32_t own = position++;
        if ((!filter.Customer.empty() && filter.Customer != entry.Customer)
            || (!filter.Project.empty() && filter.Project != entry.Project)
            || (!filter.Activity.empty() && filter.Activity != entry.Activity))
            continue;
        const auto end = [&] { rows.Ends.push_back(static_cast<std::uint32_t>(rows.Text.size())); };
        PutDigits(rows.Text, own, 1);
        end();
        const std::string &date = entry.Date;
        rows.Text.append(date, 0, 4).append(date, 5, 2).append(date, 8, 2);
        end();
        rows.Text.append(date, 5, 2).append(1, '/').append(date, 8, 2).append(1, '/');
        rows.Text.append(date, 0, 4);
        end();
        const auto customer = company.Customers.find(entry.Customer);
        rows.Text += customer == company.Customers.end() ? "" : customer->second;
        end();
        key.assign(entry.Customer).append(1, '\n').append(entry.Project);
        const auto project = company.Projects.find(key);
        rows.Text += project == company.Projects.end() ? "*** invalid ***" : project->second;
        end();
        const auto activity = company.Activities.find(entry.Activity);
        const bool known = activity != company.Activities.end();
        rows.Text += known ? activity->second.Description : "*** invalid ***";
        end();
        rows.Text += known && activity->second.Expense ? 'E' : 'T';
        end();
        PutNumber(rows.Text, entry.Hours, 2);
        end();
        PutNumber(rows.Text, entry.Rate, 3);
        end();
        PutNumber(rows.Text, entry.Amount, 2);
        end();
    }
    return rows;
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

} // namespace Limits
