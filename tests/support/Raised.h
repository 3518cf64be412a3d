#pragma once

#include "platform/clsRunTimeError.h"
#include "tests/support/PrintQt.h"

#include <QDir>
#include <QString>

#include <ostream>

/// What a call raised: number 0 and no text when it came back in peace.
struct Raised
{
    int Number = 0;
    QString Description;

    /// Whichever separators its paths have.
    bool Names(const QString &what) const
    {
        return QDir::toNativeSeparators(Description).contains(QDir::toNativeSeparators(what));
    }
};

template <class Call>
Raised RaisedBy(Call &&call)
{
    try {
        call();
    } catch (const clsRunTimeError &error) {
        return {error.Number(), error.Description()};
    }
    return {};
}

inline void PrintTo(const Raised &raised, std::ostream *out)
{
    *out << raised.Number << " " << raised.Description.toStdString();
}
