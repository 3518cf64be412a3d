#include "tests/store/StoreFixture.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

StoreFixture::StoreFixture(const QString &parent)
    : m_folder(parent + u"/worklog-store-XXXXXX"_s)
{
    Store.SetCreator(CodeNumber(u"WkLg"_s));
}

QString StoreFixture::InMemory()
{
    const QString memory = u"/dev/shm"_s;
    return QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
}

StoreFixture::Handle StoreFixture::Open(const QString &name)
{
    return Store.OpenOrRaise(PathOf(name));
}

StoreFixture::Handle StoreFixture::Create(const QString &name, QStringView schema)
{
    const Handle handle
        = Store.CreateDatabase(PathOf(name), CodeNumber(u"DATA"_s), CodeNumber(u"WkLg"_s));
    Store.CreateTable(handle, name, schema.toString());
    return handle;
}

void StoreFixture::Build(const QString &name, const std::vector<ThreeFields> &records)
{
    const Handle handle = Create(name);
    RecordStore::Batch batch(Store, handle);
    for (const ThreeFields &record : records)
        Add(handle, record);
    batch.Commit();
    Store.CloseDatabase(handle);
}

StoreFixture::Handle StoreFixture::Table(
    const std::vector<ThreeFields> &records, const QString &name)
{
    Build(name, records);
    return Open(name);
}

void StoreFixture::Add(Handle handle, const ThreeFields &record)
{
    Store.AddRecord(handle);
    Store.WriteRecord(handle, record);
    Store.UpdateRecord(handle);
}

void StoreFixture::Change(Handle handle, const ThreeFields &record)
{
    Store.EditRecord(handle);
    Store.WriteRecord(handle, record);
    Store.UpdateRecord(handle);
}

ThreeFields StoreFixture::Read(Handle handle)
{
    ThreeFields record;
    EXPECT_TRUE(Store.ReadRecord(handle, record));
    return record;
}

QString StoreFixture::Names(Handle handle)
{
    QStringList names;
    for (Store.MoveFirst(handle); !Store.IsEndOfTable(handle); Store.MoveNext(handle))
        names.append(Name(handle));
    return names.join(u' ');
}

QString StoreFixture::Found(Handle handle, qint32 field, const RecordStore::Key &key)
{
    Store.FindRecord(handle, field, key);
    const QString name = Store.IsEndOfTable(handle) ? u"end"_s : Name(handle);
    return name + u' ' + QString::number(Store.GetLastStatus(handle));
}

QString StoreFixture::NamesInFile(const QString &name)
{
    RecordStore fresh;
    fresh.SetCreator(CodeNumber(u"WkLg"_s));
    const Handle handle = fresh.OpenDatabase(1, PathOf(name), 0, 0, 0, 0, 3);
    QStringList names;
    for (fresh.MoveFirst(handle); !fresh.IsEndOfTable(handle); fresh.MoveNext(handle))
        names.append(fresh.ReadField(handle, 0));
    return names.join(u' ');
}

QByteArray StoreFixture::Bytes(const QString &name) const
{
    QFile file(FileOf(name));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name.toStdString();
    return file.readAll();
}

QStringList StoreFixture::FilesInFolder() const
{
    return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name);
}

void StoreFixture::WriteFile(const QString &name, const QByteArray &content) const
{
    QFile file(FileOf(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_EQ(file.write(content), content.size());
}
