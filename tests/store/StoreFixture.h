#pragma once

#include "store/FieldText.h"
#include "store/RecordStore.h"
#include "tests/store/ThreeFields.h"
#include "tests/support/OtherProgram.h"
#include "tests/support/Raised.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>

#include <vector>

/// A folder of its own with a store on it, whose creator is "WkLg".
class StoreFixture : public testing::Test
{
protected:
    using Handle = RecordStore::Handle;

    /// The folder lies under `parent`.
    explicit StoreFixture(const QString &parent = QDir::tempPath());
    /// A folder in memory, where many writes are quick; the temporary one where there is none.
    static QString InMemory();

    /// What the store is given.
    QString PathOf(const QString &name) const { return m_folder.filePath(name); }
    /// The file that it stands for.
    QString FileOf(const QString &name) const { return RecordStore::FileName(PathOf(name)); }

    /// Raises why a file that is there cannot be opened.
    Handle Open(const QString &name);
    /// A new table that stays open.
    Handle Create(const QString &name, QStringView schema = ThreeFields::SchemaText);
    /// A closed database with these records.
    void Build(const QString &name, const std::vector<ThreeFields> &records);
    /// The same, opened again.
    Handle Table(
        const std::vector<ThreeFields> &records, const QString &name = QStringLiteral("T"));

    void Add(Handle handle, const ThreeFields &record);
    void Change(Handle handle, const ThreeFields &record); ///< the record under the cursor
    ThreeFields Read(Handle handle);
    QString Name(Handle handle) { return Store.ReadField(handle, 0); }
    /// The names in current order. Moves the cursor to the end.
    QString Names(Handle handle);
    /// "<name> <status>" after a search, "end <status>" past the last record.
    QString Found(Handle handle, qint32 field, const RecordStore::Key &key);
    /// The names that a fresh store reads from the file.
    QString NamesInFile(const QString &name);

    QByteArray Bytes(const QString &name) const;
    QStringList FilesInFolder() const;
    void WriteFile(const QString &name, const QByteArray &content) const;

    QTemporaryDir m_folder; // before the store: files are closed before they are removed
    RecordStore Store;
};
