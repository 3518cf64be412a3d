#pragma once

#include <QString>

/// The folder in a program folder in which the exchange client builds new databases. One that is
/// there while no client runs is left from a client that was killed.
inline QString StagingFolderName()
{
    return QStringLiteral("exchange-staging");
}
