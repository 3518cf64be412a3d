#include "exchange/ExchangeLog.h"

#include "exchange/PrintableText.h"
#include "platform/clsRunTimeError.h"
#include "platform/PlainFiles.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QFile>

#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

/// A line at the end of the file, written at once: lines of two computers then never mix.
void Append(const QString &fileName, const QByteArray &line)
{
    QFile file(fileName);
    OpenPlainFile(file, PlainFileUse::Append);
    if (file.size() == 0)
        TakeRightsOfFolder(fileName);
    WriteWhole(file, fileName, line);
}

} // namespace

ExchangeLog::ExchangeLog(const QString &fileName, Listener listener)
    : m_fileName(fileName)
    , m_listener(std::move(listener))
{
}

void ExchangeLog::Write(const QString &message)
{
    m_listener(message);
    if (m_fileName.isEmpty())
        return;
    const QString line = QDateTime::currentDateTime().toString(u"yyyy-MM-dd HH:mm:ss"_s) + u" ["_s
        + QString::number(QCoreApplication::applicationPid()) + u"] "_s + PrintableLine(message)
        + u'\n';
    try {
        Append(m_fileName, line.toUtf8());
    } catch (const clsRunTimeError &error) {
        if (m_complained)
            return;
        m_complained = true;
        const QString complaint = u"the log cannot be written: "_s + error.Description();
        TellStandardError(complaint);
        m_listener(complaint);
    }
}

void ExchangeLog::WriteError(const QString &message)
{
    TellStandardError(message);
    Write(u"Error: "_s + message);
}

void TellStandardError(const QString &message)
{
    std::fputs((u"pvxwin32.exe: "_s + PrintableLine(message) + u'\n').toUtf8().constData(), stderr);
}
