#include "platform/DateTyping.h"

#include <QLocale>

#include <utility>

using namespace Qt::StringLiterals;

namespace {

constexpr int DigitsOfPart = 2;
constexpr int Century = 2000;
constexpr int YearsOfCentury = 100;
constexpr int Months = 12;
constexpr int MaxDays = 31;

bool IsMonth(int number)
{
    return number >= 1 && number <= Months;
}

/// In any year: February has its leap day.
int MaxDaysOf(int month)
{
    return IsMonth(month) ? QDate(Century, month, 1).daysInMonth() : MaxDays;
}

} // namespace

DateTyping::Parts DateTyping::PartsOf(const QDate &date)
{
    return {date.month(), date.day(), date.year()};
}

DateTyping::Parts DateTyping::With(Parts parts, DatePart part, int number)
{
    switch (part) {
    case DatePart::Month:
        parts.Month = number;
        break;
    case DatePart::Day:
        parts.Day = number;
        break;
    case DatePart::Year:
        parts.Year = Century + number;
        break;
    }
    return parts;
}

bool DateTyping::IsImpossible(const Parts &parts, DatePart part, bool complete)
{
    switch (part) {
    case DatePart::Month:
        return parts.Month > Months || (complete && parts.Month == 0);
    case DatePart::Day:
        return parts.Day > MaxDaysOf(parts.Month) || (complete && parts.Day == 0);
    case DatePart::Year:
        break;
    }
    return false;
}

QString DateTyping::WhyNoDate(const Parts &parts)
{
    if (!IsMonth(parts.Month))
        return u"There is no month %1."_s.arg(parts.Month);
    if (parts.Day < 1 || parts.Day > MaxDays)
        return u"There is no day %1."_s.arg(parts.Day);
    return u"%1 %2 has no day %3."_s.arg(QLocale::c().monthName(parts.Month),
        QString::number(parts.Year), QString::number(parts.Day));
}

void DateTyping::Begin(const QDate &date)
{
    m_date = date;
    m_shown = PartsOf(date);
    m_digits = 0;
    m_refusal.clear();
}

void DateTyping::Type(DatePart part, int digit)
{
    if (part == m_refused)
        m_refusal.clear();
    if (m_digits % DigitsOfPart == 0) {
        m_digits = 0;
        m_number = 0;
        m_shownBefore = m_shown;
        m_dateBefore = m_date;
    }
    ++m_digits;
    m_number = 10 * m_number + digit;
    const Parts typed = With(m_shownBefore, part, m_number);
    if (IsImpossible(typed, part, m_digits == DigitsOfPart)) {
        GoBack();
        m_refusal = WhyNoDate(typed);
        m_refused = part;
        return;
    }
    m_shown = typed;
    m_date = typed.Date().isValid() ? typed.Date() : m_dateBefore;
}

bool DateTyping::EndPart()
{
    return std::exchange(m_digits, 0) > 0;
}

void DateTyping::GoBack()
{
    m_shown = m_shownBefore;
    m_date = m_dateBefore;
    m_digits = 0;
}

bool DateTyping::TakeBack()
{
    if (m_digits > 0)
        GoBack();
    else if (m_shown.Date() != m_date)
        Begin(m_date);
    else
        return false;
    return true;
}

void DateTyping::Refuse(const QString &why)
{
    Begin(m_date);
    m_refusal = why;
}

bool DateTyping::Finish()
{
    EndPart();
    if (m_shown.Date() == m_date)
        return true;
    Refuse(WhyNoDate(m_shown));
    return false;
}

QString DateTyping::Text() const
{
    const auto twoDigits = [](int number) {
        return QString::number(number % YearsOfCentury).rightJustified(DigitsOfPart, u'0');
    };
    return twoDigits(m_shown.Month) + u'/' + twoDigits(m_shown.Day) + u'/'
        + twoDigits(m_shown.Year);
}

QString DateTyping::Notice() const
{
    const bool typing = m_digits % DigitsOfPart != 0;
    return typing || m_shown.Date() == m_date ? m_refusal : WhyNoDate(m_shown);
}

QDate DateFromText(const QString &text)
{
    QString plain = text.trimmed();
    plain.replace(u'-', u'/').replace(u'.', u'/');
    QStringList parts = plain.split(u'/');
    if (parts.last().size() == DigitsOfPart)
        parts.last().prepend(QString::number(Century / YearsOfCentury));
    plain = parts.join(u'/');
    const QDate date = QDate::fromString(plain, u"M/d/yyyy"_s);
    return date.isValid() ? date : QDate::fromString(text.trimmed(), Qt::ISODate);
}
