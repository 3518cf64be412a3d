#include "platform/clsDecimalSign.h"

#include <QLocale>

QValidator::State clsDecimalSign::validate(QString &text, int &) const
{
    if (QLocale().decimalPoint() == QLatin1String(","))
        text.replace(u',', u'.');
    return Acceptable;
}
