#include "tests/endtoend/driver/System.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSettings>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

QString ConfigurationOf(const QString &programFolder)
{
    return QFileInfo(programFolder).path() + u"/settings"_s;
}

QString SettingsFile(const QString &programFolder)
{
    return ConfigurationOf(programFolder) + u"/WorklogRemote.conf"_s;
}

} // namespace

QString BuiltPrograms()
{
    return QStringLiteral(WORKLOG_BUILT_PROGRAMS);
}

QString FileNameOf(const QString &program)
{
    return program;
}

QString PlaceOfAUser()
{
    return QDir::temp().filePath(u"worklog-XXXXXX"_s);
}

void PrepareToBrowse(const QString &) { }

QString OddFolderName()
{
    return u"Größe und \"Maß\" Büro"_s;
}

void MakeNoProgram(const QString &path)
{
    if (!QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner))
        throw std::runtime_error("the file's permissions cannot be changed");
}

QMap<QString, QString> UserOf(const QString &programFolder)
{
    return {{u"XDG_CONFIG_HOME"_s, ConfigurationOf(programFolder)}};
}

QString SettingOf(const QString &programFolder, const QString &key)
{
    return QSettings(SettingsFile(programFolder), QSettings::IniFormat).value(key).toString();
}

bool HasSettings(const QString &programFolder)
{
    return QFile::exists(SettingsFile(programFolder));
}

void ForgetSettings(const QString &programFolder)
{
    QFile::remove(SettingsFile(programFolder));
}
