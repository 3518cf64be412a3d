#include "app/DatabaseCheck.h"

#include "platform/clsRunTimeError.h"
#include "store/StoreErrors.h"

namespace {

void OpenCompany(Tables &tables, modSync &sync)
{
    modDBMain &main = tables.Main;
    const QString name = main.GlobalName(DatabasePrefix::Company);
    tables.Company.Handle = main.CloseTable(tables.Company.Handle);
    tables.Company.Handle = main.OpenTable(name);
    if (!tables.Company.IsOpen())
        return;
    const bool isSound = sync.Try(name, [&] {
        tables.Company.MoveFirst();
        tables.Company.ReadCompany(tables.Company.Record);
    });
    if (!isSound)
        tables.Company.Handle = main.CloseTable(tables.Company.Handle);
}

void OpenGlobalOptions(Tables &tables, modSync &sync)
{
    modDBMain &main = tables.Main;
    const QString name = main.GlobalName(DatabasePrefix::GlobalOptions);
    const auto open = [&] {
        tables.GlobalOptions.Handle = main.CloseTable(tables.GlobalOptions.Handle);
        if (!sync.Try(name, [&] { tables.GlobalOptions.TakeHandle(main.OpenTable(name)); }))
            tables.GlobalOptions.TakeHandle(main.CloseTable(tables.GlobalOptions.Handle));
        return tables.GlobalOptions.IsOpen();
    };
    if (open())
        return;
    // Without effect for one that is there but cannot be used.
    main.CreateGlobalOptions(name);
    open();
}

void SaveLastCompany(Tables &tables, const QString &company)
{
    modDBMain &main = tables.Main;
    try {
        tables.GlobalOptions.SaveLastCompany(company);
    } catch (const clsRunTimeError &error) {
        if (error.Number() != StoreErrors::Locked)
            throw;
        // It is opened for reading and writing, and another program allows only the one.
        main.NoteFailure(main.GlobalName(DatabasePrefix::GlobalOptions), error);
        tables.GlobalOptions.TakeHandle(main.CloseTable(tables.GlobalOptions.Handle));
    }
}

} // namespace

bool CheckDatabases(Tables &tables, SessionState &session, modSync &sync)
{
    OpenCompany(tables, sync);
    if (!tables.Company.IsOpen())
        return false;
    OpenGlobalOptions(tables, sync);
    if (session.CurrentCompanyCode.isEmpty())
        session.CurrentCompanyCode = tables.Company.ChooseCompany(tables.GlobalOptions);
    if (tables.GlobalOptions.IsOpen())
        SaveLastCompany(tables, session.CurrentCompanyCode);

    sync.OpenAllDatabases();
    if (!session.DatabasesReady || !tables.GlobalOptions.IsOpen())
        return false;
    session.SynchronisationInProgress = false;
    // The list opens them again for itself.
    sync.CloseAllDatabases();
    return true;
}
