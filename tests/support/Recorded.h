#pragma once

#include "platform/clsClock.h"
#include "platform/clsFolderBrowser.h"
#include "platform/clsMessageBox.h"
#include "platform/clsProcess.h"
#include "platform/clsSendKeys.h"
#include "platform/clsSettings.h"

#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

#include <functional>

/// What the program takes from outside, standing still and writing down.

/// Answers every box at once: with the next of `Answers`, else with the box's preset.
class clsRecordedMessages : public clsMessageBox
{
public:
    struct Box
    {
        QString Text;
        MessageIcon Icon;
        MessageButtons Buttons;
        MessageAnswer Preset;
    };

    MessageAnswer Ask(const QString &text, MessageIcon icon, MessageButtons buttons,
        MessageAnswer preset) override
    {
        Shown.append({text, icon, buttons, preset});
        return Answers.isEmpty() ? preset : Answers.takeFirst();
    }

    QStringList Texts() const
    {
        QStringList texts;
        for (const Box &box : Shown)
            texts.append(box.Text);
        return texts;
    }

    QList<Box> Shown;
    QList<MessageAnswer> Answers;
};

class clsRecordedKeys : public clsSendKeys
{
public:
    void SendKeys(const QString &keys) override { Sent.append(keys); }

    QStringList Sent;
};

/// Starts nothing; `Work` stands for what the process would do.
class clsRecordedProcess : public clsProcess
{
public:
    bool RunAndWait(
        const QString &program, const QString &arguments, const QString &folder) override
    {
        Programs.append(program);
        Arguments.append(arguments);
        Folders.append(folder);
        if (Work)
            Work();
        return Starts;
    }

    bool Starts = true;
    std::function<void()> Work;
    QStringList Programs;
    QStringList Arguments;
    QStringList Folders;
};

/// Chooses `Folder` at once; an empty one is the user's Cancel.
class clsRecordedBrowser : public clsFolderBrowser
{
public:
    QString Browse(const QString &prompt, const QString &start) override
    {
        Prompts.append(prompt);
        Starts.append(start);
        return Folder;
    }

    QString Folder;
    QStringList Prompts;
    QStringList Starts;
};

/// Keeps settings in memory, under "section/key".
class clsRecordedSettings : public clsSettings
{
public:
    QString GetSetting(
        const QString &section, const QString &key, const QString &fallback) const override
    {
        return Values.value(section + QLatin1Char('/') + key, fallback);
    }
    void SaveSetting(const QString &section, const QString &key, const QString &value) override
    {
        Values[section + QLatin1Char('/') + key] = value;
    }

    QMap<QString, QString> Values;
};

class clsFixedClock : public clsClock
{
public:
    QDateTime Now() const override { return Time; }

    QDateTime Time = QDateTime(QDate(2026, 3, 9), QTime(10, 30));
};
