#include "platform/clsRunTimeError.h"
#include "tests/store/SaveSteps.h"

#include <QString>

#include <cstdio>

using namespace Qt::StringLiterals;

/// Saves for ever, or creates and deletes for ever, until it is killed.
///
///     save_loop save <path> <start>      one "." on its output after each save that has returned
///     save_loop create <path>           one "." after each creation that has returned

namespace {

void Report()
{
    std::fputc('.', stdout);
    std::fflush(stdout);
}

[[noreturn]] void SaveForEver(RecordStore &store, const QString &path, unsigned start)
{
    const RecordStore::Handle handle = store.OpenDatabase(1, path, 0, 0, 0, 0, 3);
    std::mt19937 random(start);
    for (;;) {
        Apply(NextSave(random, store.GetRecordCount(handle)), store, handle);
        Report();
    }
}

[[noreturn]] void CreateForEver(RecordStore &store, const QString &path)
{
    for (;;) {
        store.DeleteDatabase(path, 0, 0);
        const quint32 creator = CodeNumber(u"WkLg"_s);
        const RecordStore::Handle handle
            = store.CreateDatabase(path, CodeNumber(u"DATA"_s), creator);
        store.CreateTable(handle, u"T"_s, ThreeFields::SchemaText.toString());
        store.CloseDatabase(handle);
        Report();
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc < 3)
        return 2;
    try {
        RecordStore store;
        store.SetCreator(CodeNumber(u"WkLg"_s));
        const QString path = QString::fromLocal8Bit(argv[2]);
        if (QByteArray(argv[1]) == "save" && argc > 3)
            SaveForEver(store, path, QByteArray(argv[3]).toUInt());
        CreateForEver(store, path);
    } catch (const clsRunTimeError &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
