#pragma once

#include <QString>

/// Held by who works with the databases of a program folder: the program or an exchange client.
inline QString DatabaseLockFile()
{
    return QStringLiteral("exchange.lock");
}

/// Held by a client that the program has started, as long as that runs.
inline QString ClientLockFile()
{
    return QStringLiteral("synchronization.lock");
}
