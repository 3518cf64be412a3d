#include "platform/clsRunTimeError.h"
#include "store/RecordStore.h"
#include "tests/fuzz/Fuzz.h"

using namespace Qt::StringLiterals;

/// A database file: opened, read, searched, sorted, written; wherever it stops, the file is named.
int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const QString file = FuzzFile(u"T.db"_s, BytesOf(data, size));
    QFile::remove(file + u"-journal"_s);
    try {
        RecordStore store;
        store.SetCreator(CodeNumber(u"WkLg"_s));
        const auto handle = store.OpenDatabase(1, QString(file).chopped(3), 0, 0, 0, 0, 3);
        FUZZ_EXPECT(!store.OpenFailure() || store.OpenFailure()->Description().contains(file));
        if (handle == 0)
            return 0;
        qint32 records = 0;
        for (store.MoveFirst(handle); !store.IsEndOfTable(handle); store.MoveNext(handle)) {
            store.ReadField(handle, 0);
            ++records;
        }
        FUZZ_EXPECT(records == store.GetRecordCount(handle));
        for (const qint32 position : store.DamagedRecords(handle))
            FUZZ_EXPECT(position >= 0 && position < records);
        store.SortTable(handle, u"0"_s);
        store.ReadNote(handle);
        store.AddRecord(handle);
        store.UpdateRecord(handle);
        store.DeleteRecord(handle, 2);
        store.CloseDatabase(handle);
    } catch (const clsRunTimeError &error) {
        FUZZ_EXPECT(error.Description().contains(file));
    }
    return 0;
}
