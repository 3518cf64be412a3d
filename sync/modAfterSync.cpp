#include "sync/modAfterSync.h"

#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"
#include "store/DroppedCompany.h"
#include "sync/FileContents.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QScopeGuard>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

const QString Ending = QStringLiteral(".db");

/// Every record of a table with the number of its occurrences.
QHash<QString, qsizetype> CountedRecords(RecordStore &store, RecordStore::Handle handle)
{
    QHash<QString, qsizetype> records;
    EntryRecord entry;
    for (store.MoveFirst(handle); store.ReadRecord(handle, entry); store.MoveNext(handle)) {
        QString text;
        const int fields = static_cast<int>(std::tuple_size_v<decltype(entry.Fields())>);
        for (int field = 0; field < fields; ++field)
            text += store.ReadField(handle, field) + u'\x1f';
        ++records[text];
    }
    return records;
}

bool MayBeCollected(const QString &option)
{
    return option == "0"_L1 || option == "1"_L1;
}

QString OptionText(const QString &option)
{
    if (option == "2"_L1)
        return u" The synchronization option in force erases entries without uploading them."_s;
    if (option == "3"_L1)
        return u" The synchronization option in force, \"No Sync\", leaves entries alone."_s;
    return u" Which synchronization option was in force is not known."_s;
}

QString MissingText(qsizetype count, const QString &company, const QString &option)
{
    const QString which = u" of the company "_s + company;
    const QString text = count == 1
        ? u"An entry"_s + which + u" that was here before the synchronization is no longer here."_s
        : QString::number(count) + u" entries"_s + which
            + u" that were here before the synchronization are no longer here."_s;
    return text + OptionText(option);
}

QString WhereToLook(const QString &worklog, const QString &copyFolder)
{
    const QString uploads = worklog.isEmpty()
        ? u"First find out whether they were uploaded: see the uploads and the log of the "
          "accounting installation."_s
        : u"First find out whether they were uploaded: see the folders \"uploads\" and the file "
          "exchange.log in\n"_s
            + worklog;
    return uploads + u"\n\nA copy from before the synchronization is in\n"_s + copyFolder
        + u"\nRestore it only if they were not uploaded, or they could be delivered twice."_s;
}

} // namespace

modAfterSync::modAfterSync(Tables &tables)
    : m_tables(tables)
    , m_folders(tables.Main.Folder())
{
}

QString modAfterSync::Report()
{
    const QStringList names = m_folders.Names();
    const QString newest = names.isEmpty() ? QString() : m_folders.PathOf(names.last());
    const std::optional<SyncNote> note = newest.isEmpty() ? std::nullopt : ReadSyncNote(newest);
    if (!note)
        return {};
    QStringList texts;
    const QString ending = m_tables.Main.GlobalName(DatabasePrefix::Entries) + Ending;
    for (const QString &file : QDir(newest).entryList({u'*' + ending}, QDir::Files, QDir::Name)) {
        const QString name = file.chopped(Ending.size());
        texts.append(WhatBecameOf(name, newest, note->Options.value(name)));
    }
    texts.removeAll(QString());
    if (!texts.isEmpty())
        texts.append(WhereToLook(note->Worklog, newest));
    return (texts + DroppedCompanies()).join(u"\n\n"_s);
}

void modAfterSync::Finish()
{
    for (const QString &name : m_folders.Names())
        RemoveSyncNote(m_folders.PathOf(name));
}

QString modAfterSync::CompanyOf(const QString &name) const
{
    return name.chopped(m_tables.Main.GlobalName(DatabasePrefix::Entries).size());
}

QString modAfterSync::WhatBecameOf(
    const QString &name, const QString &copyFolder, const QString &option)
{
    const QString file = JoinPath(m_tables.Main.Folder(), name + Ending);
    const QString copy = JoinPath(copyFolder, name + Ending);
    if (HaveSameContents(file, copy))
        return {};
    try {
        const RecordStore::Handle now = m_tables.Main.OpenTableOrRaise(name);
        const auto closed = qScopeGuard([&] { m_tables.Main.CloseTable(now); });
        if (now != 0)
            m_tables.Store.MoveFirst(now); // raises when it cannot be read
    } catch (const clsRunTimeError &error) {
        return u"The entries cannot be read any more: "_s + error.Description();
    }
    if (MayBeCollected(option))
        return {};
    try {
        const qsizetype missing = CountMissing(name, copyFolder);
        return missing == 0 ? QString() : MissingText(missing, CompanyOf(name), option);
    } catch (const clsRunTimeError &error) {
        return u"The entries cannot be compared with their copy: "_s + error.Description();
    }
}

RecordStore::Handle modAfterSync::OpenCopy(const QString &path)
{
    return m_tables.Store.OpenOrRaise(path);
}

qsizetype modAfterSync::CountMissing(const QString &name, const QString &copyFolder)
{
    modDBMain &main = m_tables.Main;
    RecordStore &store = m_tables.Store;
    const RecordStore::Handle now = main.OpenTableOrRaise(name);
    const auto closed = qScopeGuard([&] { main.CloseTable(now); });
    const RecordStore::Handle before = OpenCopy(JoinPath(copyFolder, name));
    const auto closedToo = qScopeGuard([&] { main.CloseTable(before); });
    const QHash<QString, qsizetype> left
        = now != 0 ? CountedRecords(store, now) : QHash<QString, qsizetype>();
    const QHash<QString, qsizetype> were = CountedRecords(store, before);
    qsizetype missing = 0;
    for (auto record = were.begin(); record != were.end(); ++record)
        missing += std::max<qsizetype>(record.value() - left.value(record.key()), 0);
    return missing;
}

QStringList modAfterSync::DroppedCompanies()
{
    QStringList texts;
    modDBMain &main = m_tables.Main;
    modDBComp company(m_tables.Store);
    const auto closed = qScopeGuard([&] { main.CloseTable(company.Handle); });
    try {
        company.Handle = main.OpenTable(main.GlobalName(DatabasePrefix::Company));
        if (!company.IsOpen())
            return {};
        for (company.MoveFirst(); company.ReadCompany(company.Record); company.MoveNext()) {
            if (IsDroppedCompany(company.Record.Company_Name))
                texts.append(u"The accounting system no longer lists the company "_s
                    + company.Record.Company_Code
                    + u". Its entries stay on this computer: choose the company, and \"Full Sync\" "
                      "in its synchronization options, to have them uploaded, or delete them."_s);
        }
    } catch (const clsRunTimeError &) {
        return texts; // start-up reports a list that cannot be read
    }
    return texts;
}
