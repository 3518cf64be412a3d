#pragma once

#include "exchange/CodeSet.h"
#include "exchange/Progress.h"
#include "exchange/StagedDatabases.h"
#include "exchange/TableReader.h"
#include "store/Records.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

/// Reads what the accounting side has written and builds the new databases of it.
///
/// Files:  <worklog>/Company.csv, and a file a table in <worklog>/<company code>/; names in any
///         letter case.
/// Errors: clsRunTimeError naming file and line, for everything that the file format, a column or
///         the other files do not allow.

/// The companies that are handed over, at least one; codes that differ in nothing but the case of
/// their letters are refused, because they would name the same files on some systems.
std::vector<CompanyRecord> ReadCompanies(const QString &worklog);

/// The synchronization option that a company has before its user chooses one: that of its Options
/// file, but "0" in place of "2". Only the user decides that entries are erased.
QString ReadSyncOption(const QString &worklog, const QString &folder);

/// Builds the Company database; the number of its records.
qint64 BuildCompanyTable(
    const std::vector<CompanyRecord> &companies, const QString &name, StagedDatabases &staged);

/// Builds the seven reference databases of one company.
class ReferenceData
{
public:
    /// `folder` is the company's code as the accounting system spells it, `company` as this
    /// computer does; `names` gives the databases their names. All arguments outlive the object.
    ReferenceData(const QString &worklog, const QString &folder, const QString &company,
        const modDBMain &names, StagedDatabases &staged, const ProgressReport &progress);

    /// `keptSyncOption` is the user's choice; while there is none, the option is that of
    /// ReadSyncOption. The result names the tables with the number of their records, for the log.
    QString Build(const QString &keptSyncOption);

private:
    template <class Record>
    using Check = std::function<void(Record &record, const CsvReader &csv)>;

    /// Reads a table's file into its new database. `check` completes each record and refuses what
    /// a column by itself cannot know. The result is the number of records.
    template <class Record>
    qint64 BuildTable(const TableDefinition<Record> &definition, const Check<Record> &check);
    template <class Record>
    void BuildOneRecord(const TableDefinition<Record> &definition, const Check<Record> &check);
    static void TakeNewCode(CodeSet &codes, const QString &code, const CsvReader &csv);

    void BuildMultiplier();
    void BuildDivisions();
    void BuildCustomers();
    void BuildProjects();
    void RefuseRepeatedProjects();
    void BuildActivities();

    QString m_worklog;
    QString m_folder;
    QString m_company;
    const modDBMain &m_names;
    StagedDatabases &m_staged;
    const ProgressReport &m_progress;
    CodeSet m_divisions;
    CodeSet m_customers;
    QStringList m_counts;
};
