#include "exchange/ExchangeLog.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

/// A message is a line, whatever a file's name or text brings into it.
QString OneLine(QString message)
{
    return message.replace(u'\r', u' ').replace(u'\n', u' ');
}

} // namespace

ExchangeLog::ExchangeLog(const QString &fileName)
    : m_fileName(fileName)
{
}

void ExchangeLog::Write(const QString &message)
{
    if (m_fileName.isEmpty())
        return;
    const QString line = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss"_s) + u" ["_s
        + QString::number(QCoreApplication::applicationPid()) + u"] "_s + OneLine(message) + u'\n';
    // Opened for each line and written at once: lines of two computers then never mix.
    QFile file(m_fileName);
    const QByteArray text = line.toUtf8();
    if (file.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered)
        && file.write(text) == text.size())
        return;
    if (!m_complained)
        TellStandardError(
            m_fileName + u": the log cannot be written ("_s + file.errorString() + u")"_s);
    m_complained = true;
}

void ExchangeLog::WriteError(const QString &message)
{
    TellStandardError(message);
    Write(u"Error: "_s + message);
}

void TellStandardError(const QString &message)
{
    std::fputs((u"pvxwin32.exe: "_s + OneLine(message) + u'\n').toUtf8().constData(), stderr);
}
