#pragma once

#include <QDateTime>

/// Where the program takes the time from; tests hand in one that stands still.
class clsClock
{
public:
    virtual ~clsClock() = default;
    virtual QDateTime Now() const = 0; ///< on the wall clock

    QDate Today() const { return Now().date(); }
};

class clsSystemClock : public clsClock
{
public:
    QDateTime Now() const override { return QDateTime::currentDateTime(); }
};
