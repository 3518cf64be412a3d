#include "store/BatchName.h"

#include <QDateTime>
#include <QRandomGenerator>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool IsSafeInFileName(QChar c)
{
    return c.unicode() < 128 && c.isLetterOrNumber();
}

} // namespace

QString NewBatchName(const QString &employeeNumber)
{
    QString employee = employeeNumber.isEmpty() ? u"unknown"_s : employeeNumber;
    for (QChar &c : employee) {
        if (!IsSafeInFileName(c))
            c = u'_';
    }
    const QString random
        = QString::number(QRandomGenerator::system()->generate(), 16).rightJustified(8, u'0');
    return QDateTime::currentDateTimeUtc().toString(u"yyyyMMdd-HHmmss"_s) + u'-' + employee + u'-'
        + random;
}

bool IsBatchName(const QString &text)
{
    return !text.isEmpty() && std::all_of(text.begin(), text.end(), [](QChar c) {
        return IsSafeInFileName(c) || c == u'-' || c == u'_';
    });
}
