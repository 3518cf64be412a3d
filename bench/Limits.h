#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// What the machine can do: the program's work written down plainly, without windows, stores or
/// rules. The benchmarks hold the program against it.
///
/// Units: money and hours scaled by 10,000, days as in the files ("yyyy-MM-dd ...").
namespace Limits {

struct Entry
{
    std::string Customer;
    std::string Project;
    std::string Activity;
    std::string Date;
    std::string Status;
    std::int64_t Hours = 0;
    std::int64_t Rate = 0;
    std::int64_t Amount = 0;
};

struct Activity
{
    std::string Description;
    bool Expense = false;
};

/// Everything that the list shows, in memory.
struct Company
{
    std::vector<Entry> Entries;
    std::unordered_map<std::string, std::string> Customers; ///< names by code
    std::unordered_map<std::string, std::string> Projects; ///< names by both codes
    std::unordered_map<std::string, Activity> Activities;
};

struct Filter
{
    std::string Customer;
    std::string Project;
    std::string Activity;
};

/// The ten texts of every row, one after the other in one buffer.
struct Rows
{
    std::string Text;
    std::vector<std::uint32_t> Ends;
};

/// Reads the one-table files of the company in the program folder.
Company ReadCompany(const std::string &folder, const std::string &code);
/// Joins, filters and formats. `rows` keeps its memory from one call to the next.
void Refresh(const Company &company, const Filter &filter, Rows &rows);

struct DayTotals
{
    std::array<std::int64_t, 3> ByStatus = {};
    std::int64_t Amount = 0;
};

/// Totals of the time entries by day and billing status, read from the files.
std::unordered_map<std::string, DayTotals> Summarise(
    const std::string &folder, const std::string &code);

/// One durable insert after the other, with the program's own settings, into a file of its own.
class Inserts
{
public:
    explicit Inserts(const std::string &fileName);
    ~Inserts();
    Inserts(const Inserts &) = delete;
    Inserts &operator=(const Inserts &) = delete;

    void One();

private:
    void *m_database = nullptr;
};

/// The accounting side's CSV files of a company into SQLite tables with a key column, as a plain
/// loader does it: one transaction a file, no rules, no check but the number of cells.
void LoadCsv(const std::string &csvFolder, const std::string &databaseFolder);

} // namespace Limits
