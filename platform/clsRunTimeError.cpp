#include "platform/clsRunTimeError.h"

using namespace Qt::StringLiterals;

clsRunTimeError::clsRunTimeError(int number, const QString &source, const QString &description)
    : m_number(number)
    , m_source(source)
    , m_description(description)
    , m_what((source + u": "_s + Message()).toUtf8())
{
}

QString clsRunTimeError::Message() const
{
    return u"Error #"_s + QString::number(m_number) + u" ("_s + m_description + u")."_s;
}
