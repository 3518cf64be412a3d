#include "app/DatabaseCheck.h"

#include "platform/clsRunTimeError.h"
#include "store/StoreErrors.h"

namespace {

void OpenGlobalOptions(Tables &tables)
{
    modDBMain &main = tables.Main;
    const QString name = main.GlobalName(DatabasePrefix::GlobalOptions);
    tables.GlobalOptions.Handle = main.CloseTable(tables.GlobalOptions.Handle);
    tables.GlobalOptions.TakeHandle(main.OpenTable(name));
    if (tables.GlobalOptions.IsOpen())
        return;
    main.CreateGlobalOptions(name);
    tables.GlobalOptions.TakeHandle(main.OpenTable(name));
}

/// Errors of a database that was opened and cannot be read.
bool IsDamage(const clsRunTimeError &error)
{
    return error.Number() == StoreErrors::Damaged || error.Number() == StoreErrors::BadRecord
        || error.Number() == StoreErrors::NotADatabase;
}

bool OpenAndCheck(Tables &tables, SessionState &session, modSync &sync)
{
    modDBMain &main = tables.Main;
    tables.Company.Handle = main.CloseTable(tables.Company.Handle);
    tables.Company.Handle = main.OpenTable(main.GlobalName(DatabasePrefix::Company));
    if (!tables.Company.IsOpen())
        return false;
    OpenGlobalOptions(tables);
    if (!tables.GlobalOptions.IsOpen())
        return false;
    if (session.CurrentCompanyCode.isEmpty())
        session.CurrentCompanyCode = tables.Company.ChooseCompany(tables.GlobalOptions);
    tables.GlobalOptions.SaveLastCompany(session.CurrentCompanyCode);

    sync.OpenAllDatabases();
    if (!session.DatabasesReady)
        return false;
    session.SynchronisationInProgress = false;
    // The list opens them again for itself.
    sync.CloseAllDatabases();
    return true;
}

} // namespace

bool CheckDatabases(Tables &tables, SessionState &session, modSync &sync)
{
    try {
        return OpenAndCheck(tables, session, sync);
    } catch (const clsRunTimeError &error) {
        if (!IsDamage(error))
            throw;
        tables.Main.NoteFailure(error);
        return false;
    }
}
