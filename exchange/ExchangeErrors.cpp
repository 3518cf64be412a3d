#include "exchange/ExchangeErrors.h"

#include "platform/clsRunTimeError.h"

using namespace Qt::StringLiterals;

QString CanceledText()
{
    return u"The synchronization was canceled"_s;
}

void RaiseExchangeError(int number, const QString &description)
{
    throw clsRunTimeError(number, u"Exchange"_s, description);
}

void RaiseFileError(const QString &fileName, qint64 line, const QString &what)
{
    RaiseExchangeError(
        ExchangeErrors::BadFile, fileName + u", line "_s + QString::number(line) + u": "_s + what);
}
