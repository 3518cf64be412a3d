#pragma once

#include <QString>

/// What a program needed from its start to its first painted table.
struct FirstPaint
{
    double Milliseconds = 0;
    double PeakKilobytes = 0; ///< resident memory
};

/// Starts the program, waits until a table with at least that many rows is painted, and ends it.
FirstPaint StartUntilPainted(const QString &program, int rows);

/// How often the painted program wakes up in the given time without being touched.
int IdleWakeUps(const QString &program, int rows, int milliseconds);
