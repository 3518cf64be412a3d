// Every bit of every database file of a small company, one at a time: what is read is what was
// written, or the damage is reported with the file's name.

#include "platform/Paths.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/Raised.h"
#include "tests/support/Soak.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

const QStringList Names = {u"Company-WkLg"_s, u"GlobalOptions-WkLg"_s, u"ABCOptions-WkLg"_s,
    u"ABCEmployee-WkLg"_s, u"ABCMultiplier-WkLg"_s, u"ABCDivisions-WkLg"_s, u"ABCCustomers-WkLg"_s,
    u"ABCProjects-WkLg"_s, u"ABCActivities-WkLg"_s, u"ABCEntries-WkLg"_s};

/// All that a database has for its readers.
struct Contents
{
    QStringList Records; ///< the values of each as one text
    QString Note;
    bool operator==(const Contents &) const = default;
};

class FlippedBits : public testing::TestWithParam<QString>
{
protected:
    FlippedBits()
    {
        ProgramOnDisk::MakeFolder(m_place.path());
        ProgramOnDisk::CopyFolder(m_place.path(), m_folder);
        // As the program leaves it: it has written the global options and an entry, and reserved
        // the name of the next batch.
        ProgramOnDisk program(m_folder);
        program.StartUp();
        program.ClickRow(1);
        program.TypeInto("txtDescription", u"written by the program"_s);
        program.Click("cmdOK");
        EXPECT_TRUE(program.Messages.Texts().isEmpty());
        RecordStore store;
        const auto entries = Open(store, u"ABCEntries-WkLg"_s);
        store.WriteNote(entries, u"20260308-090000-007-0123abcd"_s);
    }

    RecordStore::Handle Open(RecordStore &store, const QString &name) const
    {
        store.SetCreator(CodeNumber(SampleCodes().Creator));
        return store.OpenOrRaise(m_folder + u'/' + name);
    }

    QString File() const { return JoinPath(m_folder, GetParam() + u".db"_s); }
    QByteArray Bytes() const
    {
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        return file.readAll();
    }
    void Write(const QByteArray &bytes) const
    {
        QFile::remove(File() + u"-journal"_s);
        QFile file(File());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
    }

    /// Reads all of it; a record that the store reports has the text "reported".
    Contents Read() const
    {
        RecordStore store;
        const auto handle = Open(store, GetParam());
        Contents contents;
        for (store.MoveFirst(handle); !store.IsEndOfTable(handle); store.MoveNext(handle)) {
            QStringList values;
            for (qint32 field = 0; field < m_fields; ++field)
                values.append(store.ReadField(handle, field));
            contents.Records.append(values.join(u'|'));
        }
        for (const qint32 position : store.DamagedRecords(handle))
            contents.Records[position] = u"reported"_s;
        contents.Note = store.ReadNote(handle);
        return contents;
    }

    /// The same but for records that are reported.
    static bool IsReported(const Contents &before, const Contents &now)
    {
        return before.Note == now.Note
            && std::equal(before.Records.begin(), before.Records.end(), now.Records.begin(),
                now.Records.end(), [](const QString &was, const QString &is) {
                    return is == was || is == u"reported"_s;
                });
    }

    QTemporaryDir m_place{SampleFolderTemplate()};
    QString m_folder = QDir::toNativeSeparators(m_place.filePath(u"program"_s));
    qint32 m_fields = 0;
};

std::string NameOf(const testing::TestParamInfo<QString> &info)
{
    return info.param.chopped(5).toStdString();
}

} // namespace

TEST_P(FlippedBits, AreNoneThatChangeWhatIsReadUnnoticed)
{
    {
        RecordStore store;
        const auto handle = Open(store, GetParam());
        while (RaisedBy([&] { store.ReadField(handle, m_fields); }).Number == 0)
            ++m_fields;
    }
    const Contents before = Read();
    ASSERT_FALSE(before.Records.isEmpty());
    const QByteArray good = Bytes();
    // A prime, so that the short form meets every bit of a byte.
    const qsizetype step = Rounds(97, 1);
    qint64 flipped = 0;
    qint64 refused = 0;
    qint64 reported = 0;
    qint64 silent = 0;
    for (qsizetype bit = 0; bit < good.size() * 8; bit += step) {
        QByteArray bad = good;
        bad[bit / 8] = static_cast<char>(bad[bit / 8] ^ (1 << bit % 8));
        Write(bad);
        ++flipped;
        std::optional<Contents> now;
        const Raised raised = RaisedBy([&] { now = Read(); });
        if (raised.Number != 0) {
            ++refused;
            EXPECT_TRUE(raised.Names(File())) << bit << ": " << raised.Description.toStdString();
        } else if (*now != before) {
            ++(IsReported(before, *now) ? reported : silent);
            EXPECT_TRUE(IsReported(before, *now))
                << "bit " << bit % 8 << " of byte " << bit / 8 << ": "
                << now->Records.join(u"; "_s).toStdString() << ", " << now->Note.toStdString();
        }
    }
    const std::string name = GetParam().toStdString();
    TellCount(name + ", bits flipped", flipped);
    TellCount(name + ", refused with the file's name", refused);
    TellCount(name + ", reported with the record", reported);
    TellCount(name + ", changed unnoticed", silent);
    EXPECT_GT(refused, 0);
    EXPECT_EQ(silent, 0);
}

INSTANTIATE_TEST_SUITE_P(OfEveryDatabase, FlippedBits, testing::ValuesIn(Names), NameOf);
