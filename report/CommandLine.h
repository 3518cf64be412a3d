#pragma once

#include "report/ReportRequest.h"

#include <QString>
#include <QStringList>

/// What worklog-report was called for.
struct CommandLine
{
    enum class Wish
    {
        MakeReport,
        ShowHelp,
        ShowVersion,
        NotUnderstood
    };

    Wish What = Wish::NotUnderstood;
    ReportRequest Request;
    QString Fault; ///< why it was not understood
};

/// `arguments` are those behind the program's name.
CommandLine ParseCommandLine(const QStringList &arguments);

/// How the program is called, for people.
QString HelpText();
