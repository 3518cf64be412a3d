#pragma once

#include "session/SessionState.h"
#include "store/Tables.h"
#include "sync/modSync.h"

/// Looks at start-up whether the databases are there, and chooses the company to work in.
///
/// True: the company is chosen and remembered, Company and GlobalOptions stand open, the
/// company's databases have all been opened once and are closed again.
/// False: something is missing, or cannot be opened or read, and the user has to synchronise
/// first. What it is, is in Failures() of the tables' modDBMain; nothing there when it is missing.
/// Errors: those of the record store, for a database that cannot be written.
bool CheckDatabases(Tables &tables, SessionState &session, modSync &sync);
