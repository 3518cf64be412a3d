#include "tests/endtoend/driver/System.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <stdexcept>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace {

/// Of whoever is logged in: the tests share it and so run one after the other.
constexpr wchar_t SettingsKey[] = L"Software\\WorklogRemote";

} // namespace

QString BuiltPrograms()
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../bin"_s);
}

QString FileNameOf(const QString &program)
{
    return program + u".exe"_s;
}

QString PlaceOfAUser()
{
    return QDir::home().filePath(u"worklog-XXXXXX"_s);
}

void PrepareToBrowse(const QString &folder)
{
    // Wine's browser compares, of every folder on the way, even the time when it was last read. The
    // first reading after a change sets that time, and may not be the browser's own.
    QDir above(folder);
    while (above.cdUp())
        above.entryList();
}

QString OddFolderName()
{
    return u"Größe & 'Maß' im Büro (1) %TEMP%"_s;
}

void MakeNoProgram(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write("no program") < 0)
        throw std::runtime_error("the file cannot be overwritten");
}

QMap<QString, QString> UserOf(const QString &)
{
    return {};
}

QString SettingOf(const QString &, const QString &key)
{
    const QString section = QString::fromWCharArray(SettingsKey) + u'\\' + key.section(u'/', 0, 0);
    wchar_t text[1024];
    DWORD bytes = sizeof text;
    const LSTATUS status
        = RegGetValueW(HKEY_CURRENT_USER, reinterpret_cast<const wchar_t *>(section.utf16()),
            reinterpret_cast<const wchar_t *>(key.section(u'/', 1).utf16()), RRF_RT_REG_SZ, nullptr,
            text, &bytes);
    return status == ERROR_SUCCESS ? QString::fromWCharArray(text) : QString();
}

bool HasSettings(const QString &)
{
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, SettingsKey, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return false;
    DWORD keys = 0;
    DWORD values = 0;
    RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr,
        nullptr, nullptr, nullptr);
    RegCloseKey(key);
    return keys + values != 0;
}

void ForgetSettings(const QString &)
{
    RegDeleteTreeW(HKEY_CURRENT_USER, SettingsKey);
}
