#pragma once

#include "platform/Currency.h"

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <ostream>

/// How Qt's values and ours look in the report of a failed comparison.

QT_BEGIN_NAMESPACE
inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QStringList &texts, std::ostream *out)
{
    *out << '[' << texts.join(QStringLiteral(" | ")).toStdString() << ']';
}

inline void PrintTo(const QDateTime &date, std::ostream *out)
{
    *out << date.toString(Qt::ISODateWithMs).toStdString();
}
QT_END_NAMESPACE

inline void PrintTo(const Currency &value, std::ostream *out)
{
    *out << FormatCurrency(value, 4, LeadingZero::Yes).toStdString();
}
