#include "platform/clsSettings.h"

#include "platform/clsRunTimeError.h"
#include "platform/UserSettings.h"

#include <QCoreApplication>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

QString KeyOf(const QString &section, const QString &key)
{
    return section + u'/' + key;
}

} // namespace

QString clsUserSettings::ExecutableName()
{
    return QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
}

clsUserSettings::clsUserSettings(const QString &programName)
    : m_programName(programName)
{
}

QString clsUserSettings::GetSetting(
    const QString &section, const QString &key, const QString &fallback) const
{
    return UserSettings(m_programName)->value(KeyOf(section, key), fallback).toString();
}

void clsUserSettings::SaveSetting(const QString &section, const QString &key, const QString &value)
{
    const std::unique_ptr<QSettings> settings = UserSettings(m_programName);
    settings->setValue(KeyOf(section, key), value);
    settings->sync();
    if (settings->status() != QSettings::NoError)
        throw clsRunTimeError(RunTimeErrors::PathAccess, u"Settings"_s,
            u"The settings cannot be saved: "_s + settings->fileName());
    SyncUserSettings(*settings);
}
