#pragma once

#include "session/SessionState.h"
#include "store/Tables.h"

#include <QString>

/// What the next synchronization erases in the company that is open, if its option is `syncOption`:
/// empty unless the option erases and there are entries, and for a company that the accounting
/// system no longer lists, where nothing is erased.
///
/// Users see it before: in the dialog with the options as soon as they choose, and at the button
/// that starts the synchronization. It is not a question: users who chose that option have answered
/// it already. The exchange client announces the same, and the entries are copied first.
QString EraseNotice(const Tables &tables, const SessionState &session, const QString &syncOption);
