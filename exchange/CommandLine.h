#pragma once

#include <QString>
#include <QStringList>

/// What the client was called for.
struct CommandLine
{
    enum class Wish
    {
        Synchronise,
        MakeSample,
        ShowHelp,
        NotUnderstood
    };

    Wish What = Wish::NotUnderstood;
    QString Folder; ///< the program folder as it was passed, or the sample's root
};

/// `arguments` are those behind the program's name.
CommandLine ParseCommandLine(const QStringList &arguments);

/// How the client is called, for people.
QString UsageText();

/// The program folder that an argument stands for: every "*" stands for a blank, because the call
/// carries none. A folder that has "*" in its name is passed as it is called, so a text that is
/// the name of a folder as it stands means that one.
/// Errors: RunTimeErrors::PathNotFound when there is no such folder.
QString ProgramFolderFromArgument(const QString &argument);
