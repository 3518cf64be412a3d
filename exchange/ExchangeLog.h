#pragma once

#include <QString>

#include <functional>

/// The log of all synchronisations, a text file in UTF-8 that grows at its end.
///
/// Shape:  a line a message, "yyyy-MM-dd HH:mm:ss [process number] message", so that the runs of
///         several computers can be told apart; the time is the wall clock's.
/// Errors: a log that cannot be written is reported on standard error, once, and the run goes on.
class ExchangeLog
{
public:
    using Listener = std::function<void(const QString &message)>;

    /// An empty name: there is no place for a log, and errors go to standard error alone.
    /// `listener` is called with every message, also with the one that the log cannot be written.
    explicit ExchangeLog(
        const QString &fileName, Listener listener = [](const QString &) {});

    void Write(const QString &message);
    /// The same, and on standard error.
    void WriteError(const QString &message);

private:
    QString m_fileName;
    Listener m_listener;
    bool m_complained = false;
};

/// A line on standard error, under the client's name.
void TellStandardError(const QString &message);
