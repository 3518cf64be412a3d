#pragma once

#include <QString>

#include <optional>

/// The server that a client installation works with.
struct ActiveServer
{
    QString Host;
    QString Port;
};

/// Reads it out of the client's sota.ini: the line "host;port;" after a line that contains
/// "[Active Server]", in this case of letters; the last such section counts. Blank lines carry no
/// meaning. The port is all but the last character after the first ";", so that a line without
/// its ";" at the end loses the port's last digit; this is kept.
///
/// Nothing when no section is followed by such a line.
/// Errors: clsRunTimeError 53 when the file is missing, 75 when it cannot be read.
std::optional<ActiveServer> ReadActiveServer(const QString &path);
