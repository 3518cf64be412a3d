#include "store/modDBGOpts.h"

void modDBGOpts::TakeHandle(RecordStore::Handle handle)
{
    Handle = handle;
    Record = GlobalOptionsRecord();
    if (IsOpen())
        ReadGlobalOptions(Record);
}

void modDBGOpts::SaveLastCompany(const QString &code)
{
    Record.Last_Company = code;
    if (GetRecordCount() == 0) {
        AddGlobalOptions(Record);
        return;
    }
    MoveFirst();
    UpdateGlobalOptions(Record);
}
