#pragma once

#include <QDate>
#include <QString>

enum class DatePart
{
    Month,
    Day,
    Year
};

/// What the digits that are typed into the parts of a date make of it. Sees no widget.
///
/// Shape:  a part takes two digits, and each counts at once: after "1" the month is January, after
///         "12" December. Parts that together are no date (02/29 before the year is typed) are
///         shown as they were typed, and the date is still the last one that was shown.
/// Units:  the two digits of a year are those of 2000 to 2099.
/// Errors: a number that no date can have in that part is refused: the part shows what it showed
///         before it was typed into, and Notice() says why.
class DateTyping
{
public:
    void Begin(const QDate &date); ///< shows this date; forgets what was typed and refused
    void Type(DatePart part, int digit);
    /// The next digit is the first of its part; false when nothing had been typed into this one.
    bool EndPart();
    /// Takes back what was typed into the part, or else the parts that are no date; false when
    /// there was neither.
    bool TakeBack();
    void Refuse(const QString &why); ///< shows the date, and this as the notice
    /// Ends the typing. False when what is shown is no date: the date is shown instead, and
    /// Notice() says why.
    bool Finish();

    QDate Date() const { return m_date; }
    QString Text() const; ///< "MM/dd/yy" of what is shown
    QString Notice() const; ///< why a number was refused or is no date yet; empty without a reason

private:
    struct Parts
    {
        int Month = 0;
        int Day = 0;
        int Year = 0;

        QDate Date() const { return {Year, Month, Day}; }
    };

    static Parts PartsOf(const QDate &date);
    static Parts With(Parts parts, DatePart part, int number);
    static bool IsImpossible(const Parts &parts, DatePart part, bool complete);
    static QString WhyNoDate(const Parts &parts);
    void GoBack(); ///< to what was shown before the part was typed into

    QDate m_date;
    Parts m_shown;
    int m_digits = 0; // typed into the present part
    int m_number = 0; // what they are
    QDate m_dateBefore; // as the first of them was typed
    Parts m_shownBefore;
    QString m_refusal;
    DatePart m_refused = DatePart::Month; // what the refusal is about
};

/// The date that a text stands for: month, day and year (two digits or four) with "/", "-" or "."
/// between them, or yyyy-MM-dd; an invalid one when it is no date.
QDate DateFromText(const QString &text);
