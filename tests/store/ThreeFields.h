#pragma once

#include "store/FieldText.h"
#include "store/RecordStore.h"

#include <ostream>

/// A record with one field of each type; the texts make it tell records apart.
struct ThreeFields
{
    QString Name;
    QDateTime Day;
    Currency Amount;

    static constexpr QStringView SchemaText = u"Name String, Day Date, Amount Currency,";
    auto Fields() { return std::tie(Name, Day, Amount); }
    auto Fields() const { return std::tie(Name, Day, Amount); }
    bool operator==(const ThreeFields &) const = default;
};

inline void PrintTo(const ThreeFields &record, std::ostream *out)
{
    *out << '{' << record.Name.toStdString() << ", "
         << record.Day.toString(Qt::ISODate).toStdString() << ", " << record.Amount.Scaled() << '}';
}

/// A day of March 2024, which is enough of a calendar for most tests.
inline QDateTime March(int day)
{
    return WallClock(QDate(2024, 3, day));
}

inline ThreeFields Three(const QString &name, int marchDay = 1, int amount = 0)
{
    return {name, March(marchDay), Currency::FromWhole(amount)};
}
