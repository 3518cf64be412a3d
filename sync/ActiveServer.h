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
/// "[Active Server]", in this case of letters; the last such section counts. Lines are taken as
/// they are, without their line ends. The port is all but the last character after the first ";",
/// whatever that character is: a line without its ";" at the end loses the port's last digit
/// (intentional).
///
/// std::nullopt when no section is followed by such a line.
/// Errors: clsRunTimeError 53 when the file is missing, 75 when it cannot be read.
std::optional<ActiveServer> ReadActiveServer(const QString &path);
