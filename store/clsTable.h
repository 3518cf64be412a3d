#pragma once

#include "store/RecordStore.h"

/// One table's process-wide handle and record structure: what every access module is built on.
///
/// Shape:  `Handle` is 0 while the table is closed; `Record` is the record as last read.
/// Errors: those of the record store, BadHandle when the table is closed.
template <class RecordType>
class clsTable
{
public:
    explicit clsTable(RecordStore &store) // outlives it
        : m_store(store)
    {
    }

    bool IsOpen() const { return Handle != 0; }

    void Preload() const { m_store.Preload(Handle); }
    void MoveFirst() { m_store.MoveFirst(Handle); }
    void MoveCursor() { m_store.MoveCursor(Handle); }
    void MoveNext() { m_store.MoveNext(Handle); }
    bool IsEndOfTable() const { return m_store.IsEndOfTable(Handle); }
    qint32 GetRecordCount() const { return m_store.GetRecordCount(Handle); }
    qint32 GetRecordPosition() const { return m_store.GetRecordPosition(Handle); }
    void MoveToPosition(qint32 position) { m_store.MoveToPosition(Handle, position); }
    void DeleteRecord() { m_store.DeleteRecord(Handle, 2); }

    quint64 Version() const { return m_store.Version(Handle); }
    /// A String field of the record that Find would end on; the cursor stays.
    RecordStore::Sighting Sight(qint32 keyField, const QString &key, qint32 valueField) const
    {
        return m_store.Sight(Handle, keyField, key, valueField);
    }

    /// Moves the cursor by a key; true for an exact match.
    bool Find(qint32 field, const RecordStore::Key &key)
    {
        m_store.FindRecord(Handle, field, key);
        return m_store.GetLastStatus(Handle) == RecordStore::ExactMatch;
    }

    RecordStore::Handle Handle = 0;
    RecordType Record;

protected:
    bool Read(RecordType &record) const { return m_store.ReadRecord(Handle, record); }
    void Write(const RecordType &record) { m_store.WriteRecord(Handle, record); }
    void Update(const RecordType &record)
    {
        m_store.EditRecord(Handle);
        Write(record);
        m_store.UpdateRecord(Handle);
    }
    void Add(const RecordType &record)
    {
        m_store.AddRecord(Handle);
        Write(record);
        m_store.UpdateRecord(Handle);
    }

    RecordStore &m_store;
};
