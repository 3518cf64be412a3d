#pragma once

#include <QString>

/// The four-character codes that databases are created with; start-up stores them.
struct StoreCodes
{
    QString Creator;
    QString Second; ///< stored with the others, passed to no operation
    QString Type;
};

/// What a database's name begins with, or, for a company's databases, follows the company code.
namespace DatabasePrefix {
constexpr QStringView Company = u"Company-";
constexpr QStringView GlobalOptions = u"GlobalOptions-";
constexpr QStringView Options = u"Options-";
constexpr QStringView Employee = u"Employee-";
constexpr QStringView Multiplier = u"Multiplier-";
constexpr QStringView Divisions = u"Divisions-";
constexpr QStringView Customers = u"Customers-";
constexpr QStringView Projects = u"Projects-";
constexpr QStringView Activities = u"Activities-";
constexpr QStringView Entries = u"Entries-";
constexpr QStringView HoursSummary = u"HoursSummary-";
} // namespace DatabasePrefix

/// prefix & creator code: "Company-WkLg".
inline QString GlobalDatabaseName(QStringView prefix, const QString &creator)
{
    return prefix.toString() + creator;
}

/// company code & prefix & creator code: "ABCEntries-WkLg".
inline QString CompanyDatabaseName(
    const QString &company, QStringView prefix, const QString &creator)
{
    return company + prefix.toString() + creator;
}
