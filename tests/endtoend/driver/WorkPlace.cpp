#include "tests/endtoend/driver/WorkPlace.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSettings>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

const QString BuiltPrograms = QStringLiteral(WORKLOG_BUILT_PROGRAMS);

QByteArray OutputOf(const QString &program, const QStringList &arguments)
{
    QProcess command;
    command.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    command.start(program, arguments);
    if (!command.waitForFinished() || command.exitCode() != 0)
        throw std::runtime_error(program.toStdString() + " failed");
    return command.readAllStandardOutput();
}

void WriteFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot be written: " + path.toStdString());
}

} // namespace

WorkPlace::WorkPlace(const QString &folderName)
    : m_folder(m_place.filePath(folderName))
    , m_root(m_place.filePath(u"mas90"_s))
{
    QDir().mkpath(m_folder);
    for (const QString &name : {u"WorklogRemote"_s, u"WL.HLP"_s})
        QFile::copy(BuiltPrograms + u'/' + name, m_folder + u'/' + name);
    OutputOf(BuiltPrograms + u"/pvxwin32.exe"_s, {u"--sample"_s, m_root});
    WriteLaunchFile();
}

void WorkPlace::WriteLaunchFile() const
{
    const QString arguments
        = u"\"%1/launcher/sota.ini\" \"%1/kv/kv_startup.m4p\" -ARG RUN_DIRECT UION * WLWXBA"_s;
    WriteFile(
        m_folder + u"/mas90.ini"_s, (m_root + u'\n' + arguments.arg(m_root) + u'\n').toUtf8());
}

void WorkPlace::RemoveLaunchFile() const
{
    QFile::remove(m_folder + u"/mas90.ini"_s);
}

QStringList WorkPlace::LaunchFileLines() const
{
    QFile file(m_folder + u"/mas90.ini"_s);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll()).split(u'\n');
}

void WorkPlace::MakeClientInstallation() const
{
    if (!QFile::remove(m_root + u"/soa/startup.m4p"_s))
        throw std::runtime_error("the root is no installation");
    WriteFile(m_root + u"/Home/wkStatus.flp"_s, {});
}

QString WorkPlace::Setting(const QString &key) const
{
    return QSettings(SettingsFile(), QSettings::IniFormat).value(key).toString();
}

bool WorkPlace::HasSettings() const
{
    return QFile::exists(SettingsFile());
}

QString WorkPlace::SettingsFile() const
{
    return m_place.filePath(u"settings/WorklogRemote.conf"_s);
}

void WorkPlace::Replace(const QString &company, const QString &table, const QByteArray &before,
    const QByteArray &after) const
{
    const QString path = m_root + u"/worklog/"_s + company + u'/' + table + u".csv"_s;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no such table: " + path.toStdString());
    QByteArray content = file.readAll();
    if (!content.contains(before))
        throw std::runtime_error("the table does not say: " + before.toStdString());
    file.close();
    WriteFile(path, content.replace(before, after));
}

QStringList WorkPlace::Databases() const
{
    QStringList names;
    for (const QFileInfo &file : QDir(m_folder).entryInfoList({u"*.db"_s}, QDir::Files))
        names.append(file.completeBaseName());
    return names;
}

void WorkPlace::Synchronise() const
{
    OutputOf(Client(), {u"-hd"_s, u"by-hand"_s, m_folder});
}

int WorkPlace::FinishedRuns() const
{
    QFile log(m_root + u"/worklog/exchange.log"_s);
    return log.open(QIODevice::ReadOnly) ? static_cast<int>(log.readAll().count("Done\n")) : 0;
}

QStringList WorkPlace::UploadedRows(const QString &company) const
{
    QStringList rows;
    const QDir uploads(m_root + u"/worklog/"_s + company + u"/uploads"_s);
    for (const QString &name : uploads.entryList({u"*.csv"_s}, QDir::Files)) {
        QFile file(uploads.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("an upload file cannot be read");
        file.readLine(); // the header
        while (!file.atEnd())
            rows.append(QString::fromUtf8(file.readLine()).trimmed());
    }
    return rows;
}

QString WorkPlace::Query(const QString &database, const QString &sql) const
{
    const QByteArray output = OutputOf(u"sqlite3"_s, {m_folder + u'/' + database + u".db"_s, sql});
    return QString::fromUtf8(output).trimmed();
}

QStringList WorkPlace::Journals() const
{
    return QDir(m_folder).entryList({u"*-journal"_s, u"*-wal"_s, u"*.new"_s}, QDir::Files);
}
