#pragma once

#include "exchange/LocalDatabases.h"
#include "store/RecordStore.h"

#include <QString>
#include <QStringList>

/// New databases on their way into the program folder: built whole in a folder beside the old
/// ones, then moved over them. What is never moved in goes with this object.
///
/// Files:  the staging folder lies in the program folder, so that a move is one step of the file
///         system. One that a killed run has left is removed first.
/// Errors: those of the record store and of DurableFiles; the local databases are then as they
///         were, in MoveIn those that were not yet replaced.
class StagedDatabases
{
public:
    explicit StagedDatabases(LocalDatabases &local); // outlives it
    ~StagedDatabases();
    StagedDatabases(const StagedDatabases &) = delete;
    StagedDatabases &operator=(const StagedDatabases &) = delete;

    /// One new database; on the disk and closed when Finish() returns.
    template <class Record>
    class Table
    {
    public:
        Table(StagedDatabases &staged, const QString &name)
            : m_staged(staged)
            , m_name(name)
            , m_handle(staged.Create(name, Record::SchemaText))
            , m_batch(staged.m_store, m_handle)
        {
        }

        ~Table()
        {
            if (!m_finished)
                m_staged.m_store.CloseDatabase(m_handle);
        }
        Table(const Table &) = delete;
        Table &operator=(const Table &) = delete;

        /// A record, as RecordStore::PutRow makes it.
        void Add(const StoredRow &row) { m_staged.m_store.AppendRow(m_handle, row); }
        void Finish()
        {
            m_batch.Commit();
            m_finished = true;
            m_staged.Close(m_handle, m_name);
        }

    private:
        StagedDatabases &m_staged;
        QString m_name;
        RecordStore::Handle m_handle;
        RecordStore::Batch m_batch;
        bool m_finished = false;
    };

    /// Moves every finished database in, in the order in which they were finished, each in one
    /// durable step. The file names that damaged ones were given before.
    QStringList MoveIn();

private:
    QString PathOf(const QString &name) const;
    RecordStore::Handle Create(const QString &name, QStringView schemaText);
    void Close(RecordStore::Handle handle, const QString &name);
    void Remove() const;

    LocalDatabases &m_local;
    QString m_folder;
    RecordStore m_store;
    QStringList m_finished;
};
