#include "tests/endtoend/driver/WorkPlace.h"

#include "tests/endtoend/driver/System.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <sqlite3.h>

#include <memory>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

void Run(const QString &program, const QStringList &arguments)
{
    QProcess command;
    command.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    command.start(program, arguments);
    if (!command.waitForFinished() || command.exitCode() != 0)
        throw std::runtime_error(program.toStdString() + " failed");
}

void WriteFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot be written: " + path.toStdString());
}

/// With "|" between values.
QString RowOf(sqlite3_stmt *statement)
{
    QStringList values;
    for (int column = 0; column < sqlite3_column_count(statement); ++column) {
        const void *text = sqlite3_column_text(statement, column); // null for NULL
        values.append(QString::fromUtf8(
            static_cast<const char *>(text), sqlite3_column_bytes(statement, column)));
    }
    return values.join(u'|');
}

} // namespace

WorkPlace::WorkPlace(const QString &folderName)
    : m_place(PlaceOfAUser())
    , m_folder(QDir::toNativeSeparators(m_place.filePath(folderName)))
    , m_root(QDir::toNativeSeparators(m_place.filePath(u"mas90"_s)))
{
    ForgetSettings(m_folder); // a killed test may have left them
    QDir().mkpath(m_folder);
    for (const QString &name : {FileNameOf(u"WorklogRemote"_s), u"WL.HLP"_s})
        QFile::copy(BuiltPrograms() + u'/' + name, InProgramFolder(name));
    Run(BuiltPrograms() + u"/pvxwin32.exe"_s, {u"--sample"_s, m_root});
    WriteLaunchFile();
    PrepareToBrowse(FolderOfRoot());
}

WorkPlace::~WorkPlace()
{
    ForgetSettings(m_folder);
}

QString WorkPlace::FolderOfRoot() const
{
    return QDir::toNativeSeparators(QFileInfo(m_root).path());
}

QString WorkPlace::InProgramFolder(const QString &name) const
{
    return QDir::toNativeSeparators(m_folder + u'/' + name);
}

QString WorkPlace::InRoot(const QString &name) const
{
    return QDir::toNativeSeparators(m_root + u'/' + name);
}

QString WorkPlace::LaunchArguments() const
{
    return u"\"%1\" \"%2\" -ARG RUN_DIRECT UION * WLWXBA"_s.arg(
        InRoot(u"launcher/sota.ini"_s), InRoot(u"kv/kv_startup.m4p"_s));
}

void WorkPlace::WriteLaunchFile() const
{
    WriteFile(
        InProgramFolder(u"mas90.ini"_s), (m_root + u'\n' + LaunchArguments() + u'\n').toUtf8());
}

void WorkPlace::RemoveLaunchFile() const
{
    QFile::remove(InProgramFolder(u"mas90.ini"_s));
}

QStringList WorkPlace::LaunchFileLines() const
{
    QFile file(InProgramFolder(u"mas90.ini"_s));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
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
    return SettingOf(m_folder, key);
}

bool WorkPlace::HasSettings() const
{
    return ::HasSettings(m_folder);
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
    Run(Client(), {u"-hd"_s, u"by-hand"_s, m_folder});
}

int WorkPlace::FinishedRuns() const
{
    QFile log(m_root + u"/worklog/exchange.log"_s);
    if (!log.open(QIODevice::ReadOnly | QIODevice::Text))
        return 0;
    return static_cast<int>(log.readAll().count("Done\n"));
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
    sqlite3 *opened = nullptr;
    const QByteArray path = InProgramFolder(database + u".db"_s).toUtf8();
    const int status = sqlite3_open_v2(path.constData(), &opened, SQLITE_OPEN_READWRITE, nullptr);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> closed(opened, &sqlite3_close);
    sqlite3_stmt *prepared = nullptr;
    if (status != SQLITE_OK
        || sqlite3_prepare_v2(opened, sql.toUtf8().constData(), -1, &prepared, nullptr)
            != SQLITE_OK)
        throw std::runtime_error(path.toStdString() + ": " + sqlite3_errmsg(opened));
    const std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)> done(
        prepared, &sqlite3_finalize);
    QStringList rows;
    while (sqlite3_step(prepared) == SQLITE_ROW)
        rows.append(RowOf(prepared));
    return rows.join(u'\n');
}

QStringList WorkPlace::Journals() const
{
    return QDir(m_folder).entryList({u"*-journal"_s, u"*-wal"_s, u"*.new"_s}, QDir::Files);
}
