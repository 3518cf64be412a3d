#pragma once

#include <QString>

/// Settings of the user who runs the program, by section and key; they outlive the program folder.
/// Tests hand in ones that live in memory.
class clsSettings
{
public:
    virtual ~clsSettings() = default;

    /// `fallback` when nothing was ever saved under the key.
    virtual QString GetSetting(
        const QString &section, const QString &key, const QString &fallback) const = 0;
    /// On the disk on return.
    /// Errors: clsRunTimeError 75 when that cannot be.
    virtual void SaveSetting(const QString &section, const QString &key, const QString &value) = 0;
};

/// Where the system keeps such settings, under the program's name.
class clsUserSettings : public clsSettings
{
public:
    /// The name of the executable without its extension.
    static QString ExecutableName();

    explicit clsUserSettings(const QString &programName = ExecutableName());

    QString GetSetting(
        const QString &section, const QString &key, const QString &fallback) const override;
    void SaveSetting(const QString &section, const QString &key, const QString &value) override;

private:
    QString m_programName;
};
