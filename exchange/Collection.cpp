#include "exchange/Collection.h"

#include "exchange/ExchangeErrors.h"
#include "store/BatchName.h"
#include "store/StoreErrors.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint32 DeleteMode = 2;

} // namespace

Collection::Collection(LocalDatabases &local, const QString &worklog, const QString &company,
    const QString &employeeNumber, const QString &folder)
    : m_local(local)
    , m_company(company)
    , m_employeeNumber(employeeNumber)
    , m_databaseName(local.Main().CompanyName(company, DatabasePrefix::Entries))
    , m_uploads(worklog, folder.isEmpty() ? company : folder)
{
}

bool Collection::Prepare()
{
    m_entries = std::make_unique<LocalDatabases::Open>(m_local, m_databaseName);
    if (!m_entries->Exists())
        return false;
    const RecordStore::Handle entries = m_entries->Handle;
    RequireAsSaved(entries);
    const BatchNote note = ReadBatchNote(entries);
    const QString delivered = note.Batch.isEmpty() ? QString() : m_uploads.Delivered(note.Batch);
    if (delivered.isEmpty())
        m_batch = note.Batch;
    else
        Finish(entries, note, delivered);
    const std::string contents = ReadEntries(entries);
    if (m_batch.isEmpty())
        m_batch = NewBatchName(m_employeeNumber);
    if (m_count == 0) {
        m_uploads.Discard(m_batch);
        Reserve(entries, m_batch);
        return false;
    }
    m_digest = Uploads::DigestOf(contents);
    // The note comes first: it is all that the next run knows of a hidden file that this one
    // leaves.
    m_uploads.MakeFolder();
    m_local.Store().WriteNote(entries, BatchNote{m_batch, m_digest}.Text());
    m_uploads.Write(m_batch, contents);
    return true;
}

void Collection::Reserve(RecordStore::Handle entries, const QString &batch)
{
    if (m_local.Store().ReadNote(entries) != batch)
        m_local.Store().WriteNote(entries, batch);
}

void Collection::RequireAsSaved(RecordStore::Handle entries)
{
    // The user sees them in the program, and nobody else can say what was meant.
    const std::vector<qint32> damaged = m_local.Store().DamagedRecords(entries);
    if (!damaged.empty())
        RaiseStoreError(StoreErrors::BadRecord,
            u"Record "_s + QString::number(damaged.front() + 1) + u" of the database "_s
                + m_databaseName
                + u" is not as it was saved; correct or delete it in Worklog Remote"_s);
}

void Collection::Finish(
    RecordStore::Handle entries, const BatchNote &note, const QString &delivered)
{
    // Entries are recognized by their lines; in a file that was changed they would not be found,
    // and would be delivered again. The note of a restored copy can be older than the file: what
    // the client has recorded with the file is then the proof.
    const QString recorded = m_uploads.RecordedDigest(note.Batch);
    const QString digest = Uploads::DigestOfFile(delivered);
    const bool isRecorded = !note.Digest.isEmpty() || !recorded.isEmpty();
    if (isRecorded && digest != note.Digest && digest != recorded)
        RaiseExchangeError(ExchangeErrors::BadFile,
            delivered + u": the file was changed after it was handed over; put the original back "_s
                + u"and synchronise again"_s);
    Uploads::Secure(delivered);
    if (digest == note.Digest && recorded.isEmpty())
        m_uploads.RecordDigest(note.Batch, digest);
    m_uploads.Discard(note.Batch);
    m_batch = NewBatchName(m_employeeNumber);
    m_finishedCount = TakeOut(entries, ReadEntryLines(delivered), m_batch);
}

void Collection::Deliver()
{
    m_uploads.HandOver(m_batch);
    const QString next = NewBatchName(m_employeeNumber);
    // Most often the entries are what was written into the file. Otherwise those that are in the
    // file are looked for: the user may have changed some, and a computer with a copy of this
    // program folder may have put its own file under the same hidden name.
    const bool isAsWritten = Uploads::DigestOfFile(File()) == m_digest;
    if (isAsWritten)
        m_uploads.RecordDigest(m_batch, m_digest);
    if (!isAsWritten || !TakeAllOut(m_entries->Handle, m_version, next))
        TakeOut(m_entries->Handle, ReadEntryLines(File()), next);
    m_entries.reset();
}

qint64 Collection::Erase()
{
    const LocalDatabases::Open entries(m_local, m_databaseName);
    if (!entries.Exists())
        return 0;
    QString batch = ReadBatchNote(entries.Handle).Batch;
    if (!batch.isEmpty())
        m_uploads.Discard(batch);
    if (batch.isEmpty() || !m_uploads.Delivered(batch).isEmpty())
        batch = NewBatchName(m_employeeNumber);
    RecordStore &store = m_local.Store();
    quint64 version = 0;
    qint64 count = 0;
    do {
        version = store.Version(entries.Handle);
        count = store.GetRecordCount(entries.Handle);
    } while (count > 0 && !TakeAllOut(entries.Handle, version, batch));
    Reserve(entries.Handle, batch);
    return count;
}

BatchNote Collection::ReadBatchNote(RecordStore::Handle entries)
{
    const QString text = m_local.Store().ReadNote(entries);
    const std::optional<BatchNote> note = BatchNote::FromText(text);
    if (!note)
        RaiseExchangeError(ExchangeErrors::BadNote,
            u"The database "_s + m_databaseName + u" carries the mark of another program: "_s
                + text);
    return *note;
}

std::string Collection::ReadEntries(RecordStore::Handle entries)
{
    RecordStore &store = m_local.Store();
    std::string contents = EntryHeader();
    EntryRecord entry;
    for (store.MoveFirst(entries); store.ReadRecord(entries, entry); store.MoveNext(entries)) {
        contents += EntryLine(entry);
        ++m_count;
    }
    m_version = store.Version(entries);
    return contents;
}

qint64 Collection::TakeOut(RecordStore::Handle entries, EntryLines lines, const QString &nextBatch)
{
    RecordStore &store = m_local.Store();
    RecordStore::Batch batch(store, entries);
    store.MoveFirst(entries); // sees what another program wrote before the batch began
    qint64 count = 0;
    EntryRecord entry;
    // From the last to the first: a deletion then leaves the places of the others alone.
    for (qint32 position = store.GetRecordCount(entries); position-- > 0;) {
        store.MoveToPosition(entries, position);
        store.ReadRecord(entries, entry);
        const auto line = lines.find(EntryLine(entry));
        if (line == lines.end() || line->second == 0)
            continue;
        --line->second;
        store.DeleteRecord(entries, DeleteMode);
        ++count;
    }
    store.WriteNote(entries, nextBatch);
    batch.Commit();
    return count;
}

bool Collection::TakeAllOut(RecordStore::Handle entries, quint64 version, const QString &nextBatch)
{
    RecordStore &store = m_local.Store();
    RecordStore::Batch batch(store, entries);
    store.MoveFirst(entries);
    if (store.Version(entries) != version)
        return false;
    for (qint32 position = store.GetRecordCount(entries); position-- > 0;) {
        store.MoveToPosition(entries, position);
        store.DeleteRecord(entries, DeleteMode);
    }
    store.WriteNote(entries, nextBatch);
    batch.Commit();
    return true;
}
