#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <memory>
#include <vector>

struct sqlite3;

/// One entry as it is in the file, read without the program's own code.
struct StoredEntry
{
    QString Customer;
    QString Project;
    QString Activity;
    QString Date; ///< "yyyy-MM-dd HH:mm:ss" or empty
    QString Status;
    QString MgmtApproval;
    QString SecApproval;
    QString OnHold;
    QString Option;
    QString Multiplier;
    QString RateOverridden;
    QString Reimburse;
    qint64 Hours = 0; // currency fields in units of .0001
    qint64 Rate = 0;
    qint64 Amount = 0;
    qint64 Factor = 0;
    qint64 MarkupPercent = 0;
    qint64 MarkupAmount = 0;
    QString Description;

    QDate Day() const { return QDate::fromString(Date.left(10), QStringLiteral("yyyy-MM-dd")); }
    bool operator==(const StoredEntry &) const = default;
};

QString Described(const StoredEntry &entry);

using StoredTable = std::vector<StoredEntry>; // by position

/// The Entries file of a company, which stays open to see changes quickly.
class EntriesFile
{
public:
    /// `disk` is SQLite's name of the disk to read with.
    EntriesFile(const QString &folder, const QString &company, const char *disk);
    ~EntriesFile();
    EntriesFile(const EntriesFile &) = delete;
    EntriesFile &operator=(const EntriesFile &) = delete;

    bool HasChanged(); ///< since the last Read
    StoredTable Read();

private:
    qint64 Version();

    QString m_table;
    sqlite3 *m_database = nullptr;
    qint64 m_version = -1;
};

/// What the window shows for a value in units of .0001: no leading zero, rounded half away from
/// zero.
QString ShownNumber(qint64 scaled, int decimals);
/// The product of two such values, rounded half to even.
qint64 Product(qint64 a, qint64 b);
/// The value of a typed number; an empty text and a lone point are zero.
qint64 TypedNumber(const QString &text);
