#include "tests/entry/StoredTable.h"

#include <sqlite3.h>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

QString TextAt(sqlite3_stmt *row, int column)
{
    return QString::fromUtf8(
        static_cast<const char *>(static_cast<const void *>(sqlite3_column_text(row, column))));
}

StoredEntry EntryIn(sqlite3_stmt *row)
{
    int column = 0;
    const auto text = [&] { return TextAt(row, column++); };
    const auto number = [&] { return qint64(sqlite3_column_int64(row, column++)); };
    StoredEntry entry;
    for (QString *field : {&entry.Customer, &entry.Project, &entry.Activity, &entry.Date,
             &entry.Status, &entry.MgmtApproval, &entry.SecApproval, &entry.OnHold, &entry.Option,
             &entry.Multiplier, &entry.RateOverridden, &entry.Reimburse})
        *field = text();
    for (qint64 *field : {&entry.Hours, &entry.Rate, &entry.Amount, &entry.Factor,
             &entry.MarkupPercent, &entry.MarkupAmount})
        *field = number();
    entry.Description = text();
    return entry;
}

constexpr const char *Fields
    = "Customer_Number, Project_Number, Activity_Number, Date, Billing_Status, Mgmt_Approval, "
      "Sec_Approval, On_Hold, Billing_Option, Multiplier_Number, Rate_Overridden, Reimburse, "
      "Hours, Rate, Amount, Multiplier_Factor, Exp_Markup_Percent, Exp_Markup_Amount, Description";

} // namespace

QString Described(const StoredEntry &entry)
{
    return (QStringList{entry.Customer, entry.Project, entry.Activity, entry.Date, entry.Status,
                entry.MgmtApproval, entry.SecApproval, entry.OnHold, entry.Option, entry.Multiplier,
                entry.RateOverridden, entry.Reimburse}
        + QStringList{QString::number(entry.Hours), QString::number(entry.Rate),
            QString::number(entry.Amount), QString::number(entry.Factor), entry.Description})
        .join(u'|');
}

EntriesFile::EntriesFile(const QString &folder, const QString &company, const char *disk)
    : m_table(company + u"Entries-WkLg"_s)
{
    const QByteArray path = (folder + u'/' + m_table + u".db"_s).toUtf8();
    if (sqlite3_open_v2(path.constData(), &m_database, SQLITE_OPEN_READONLY, disk) != SQLITE_OK)
        throw std::runtime_error(path.toStdString());
}

EntriesFile::~EntriesFile()
{
    sqlite3_close(m_database);
}

qint64 EntriesFile::Version()
{
    sqlite3_stmt *statement = nullptr;
    sqlite3_prepare_v2(m_database, "PRAGMA data_version", -1, &statement, nullptr);
    const bool isThere = sqlite3_step(statement) == SQLITE_ROW;
    const qint64 version = isThere ? sqlite3_column_int64(statement, 0) : -1;
    sqlite3_finalize(statement);
    if (!isThere)
        throw std::runtime_error("the file of the entries cannot be read");
    return version;
}

bool EntriesFile::HasChanged()
{
    return Version() != m_version;
}

StoredTable EntriesFile::Read()
{
    m_version = Version();
    const QByteArray sql
        = "SELECT " + QByteArray(Fields) + " FROM \"" + m_table.toUtf8() + "\" ORDER BY rowid";
    sqlite3_stmt *statement = nullptr;
    if (sqlite3_prepare_v2(m_database, sql.constData(), -1, &statement, nullptr) != SQLITE_OK)
        throw std::runtime_error(sqlite3_errmsg(m_database));
    StoredTable entries;
    while (sqlite3_step(statement) == SQLITE_ROW)
        entries.push_back(EntryIn(statement));
    sqlite3_finalize(statement);
    return entries;
}

QString ShownNumber(qint64 scaled, int decimals)
{
    qint64 unit = 1;
    for (int i = decimals; i < 4; ++i)
        unit *= 10;
    const qint64 magnitude = scaled < 0 ? -scaled : scaled;
    const qint64 rounded = (magnitude + unit / 2) / unit;
    QString digits = QString::number(rounded).rightJustified(decimals, u'0');
    digits.insert(digits.size() - decimals, u'.');
    return scaled < 0 && rounded != 0 ? u'-' + digits : digits;
}

qint64 Product(qint64 a, qint64 b)
{
    __extension__ using Wide = __int128;
    const Wide exact = Wide(a) * b;
    const Wide magnitude = exact < 0 ? -exact : exact;
    Wide rounded = magnitude / 10000;
    const Wide rest = magnitude % 10000;
    if (rest > 5000 || (rest == 5000 && rounded % 2 == 1))
        ++rounded;
    return static_cast<qint64>(exact < 0 ? -rounded : rounded);
}

qint64 TypedNumber(const QString &text)
{
    const qsizetype point = text.indexOf(u'.');
    const QString whole = point < 0 ? text : text.left(point);
    const QString decimals = point < 0 ? QString() : text.mid(point + 1);
    const bool negative = whole.startsWith(u'-');
    const qint64 magnitude = QString(whole).remove(u'-').remove(u',').toLongLong() * 10000
        + decimals.leftJustified(4, u'0', true).toLongLong();
    return negative ? -magnitude : magnitude;
}
