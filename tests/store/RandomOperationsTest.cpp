#include "store/StoreErrors.h"
#include "tests/store/StoreFixture.h"

#include <QHash>

#include <algorithm>
#include <functional>
#include <limits>
#include <memory>
#include <random>

using namespace Qt::StringLiterals;

namespace {

/// Two texts, a date and an amount, so that sorts by several fields have something to decide.
struct FourFields
{
    QString Name;
    QDateTime Day;
    Currency Amount;
    QString Code;

    static constexpr QStringView SchemaText
        = u"Name String, Day Date, Amount Currency, Code String,";
    auto Fields() { return std::tie(Name, Day, Amount, Code); }
    auto Fields() const { return std::tie(Name, Day, Amount, Code); }
    bool operator==(const FourFields &) const = default;
};

void PrintTo(const FourFields &record, std::ostream *out)
{
    *out << '{' << record.Name.toStdString() << ", "
         << record.Day.toString(Qt::ISODate).toStdString() << ", " << record.Amount.Scaled() << ", "
         << record.Code.toStdString() << '}';
}

/// The few values that fields take, so that most records share some. A text's rank in the order
/// of texts is worked out once, from whole upper-cased texts.
class Values
{
public:
    Values()
    {
        QStringList sorted = Texts;
        std::sort(sorted.begin(), sorted.end(), [](const QString &a, const QString &b) {
            const QList<uint> upperA = a.toUpper().toUcs4();
            const QList<uint> upperB = b.toUpper().toUcs4();
            return upperA != upperB ? Below(upperA, upperB) : Below(a.toUcs4(), b.toUcs4());
        });
        for (qsizetype i = 0; i < sorted.size(); ++i)
            m_ranks[sorted[i]] = i;
    }

    qint64 Rank(const QString &text) const { return m_ranks.value(text, -1); }

    const QStringList Texts = {u""_s, u" "_s, u"a"_s, u"A"_s, u"aa"_s, u"Aa"_s, u"AA"_s, u"aB"_s,
        u"Ab"_s, u"b"_s, u"B"_s, u"007"_s, u"7"_s, u"70"_s, u"_"_s, u"["_s, u"~"_s, u"é"_s, u"É"_s,
        u"e\u0301"_s, u"ß"_s, u"SS"_s, u"ss"_s, u"ŉ"_s, u"ÿ"_s, u"Ω"_s, u"ω"_s, u"日本"_s,
        u"\U0001F600"_s, u"\uFFFD"_s, u"Long text that only differs at its end a"_s,
        u"Long text that only differs at its end A"_s, u"Long text that only differs at its end"_s,
        u"LONG TEXT THAT ONLY DIFFERS AT ITS END B"_s, u"Long text thaß"_s, u"Long texé"_s};
    const QList<QDateTime> Days = {QDateTime(), March(1), March(2), March(2).addSecs(1), March(31),
        WallClock(QDate(1, 1, 1)), WallClock(QDate(9999, 12, 31), QTime(23, 59, 59)),
        WallClock(QDate(1969, 12, 31), QTime(23, 59, 59)), WallClock(QDate(2024, 2, 29))};
    const QList<qint64> Amounts = {0, 1, -1, 75000, -75000, std::numeric_limits<qint64>::max(),
        std::numeric_limits<qint64>::min(), 10000, 20000};

private:
    static bool Below(const QList<uint> &a, const QList<uint> &b)
    {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
    }

    QHash<QString, qint64> m_ranks;
};

/// The same operations on a vector, each in the plainest way there is.
struct Model
{
    struct Row
    {
        int Id = 0;
        FourFields Record;
    };
    enum class Begun
    {
        Nothing,
        Add,
        Edit
    };

    std::vector<Row> Stored;
    std::vector<int> Order; // ids by position
    std::vector<qint32> SortedBy;
    qint32 Cursor = 0;
    qint32 Status = 0;
    Begun Pending = Begun::Nothing;
    FourFields PendingRecord;
    int LastId = 0;

    qint32 Count() const { return static_cast<qint32>(Stored.size()); }
    bool AtEnd() const { return Cursor >= Count(); }
    Row &ById(int id)
    {
        return *std::find_if(
            Stored.begin(), Stored.end(), [id](const Row &row) { return row.Id == id; });
    }
    FourFields &At(qint32 position) { return ById(Order[static_cast<size_t>(position)]).Record; }
};

class RandomOperations : public StoreFixture
{
protected:
    RandomOperations()
        : StoreFixture(InMemory())
    {
    }

    void Run(unsigned start, int steps, bool batches);

private:
    enum class Look
    {
        Full,
        Nothing
    };

    void Restart(bool reopen);
    Look Step(bool batches);
    void Check();
    void CheckCurrent();
    void Sort(const std::vector<qint32> &fields);
    void Find();
    void Write();
    void Update();
    void ExpectRaised(int number, const std::function<void()> &call);
    void EndBatch(bool commit);

    qint64 Value(const FourFields &record, qint32 field) const;
    RecordStore::Key RandomKey(qint32 field, qint64 &value);
    FourFields RandomRecord();
    qint32 Random(qint32 below)
    {
        return static_cast<qint32>(m_random() % static_cast<size_t>(below));
    }
    std::string Where() const
    {
        return "start " + std::to_string(m_start) + ", step " + std::to_string(m_step) + ", "
            + m_what;
    }

    const Values m_values;
    std::mt19937 m_random;
    unsigned m_start = 0;
    int m_step = 0;
    std::string m_what;
    Handle m_handle = 0;
    Model m_model;
    std::unique_ptr<RecordStore::Batch> m_batch;
    Model m_beforeBatch;

protected:
    int m_exact = 0; // searches that met their key
    qint32 m_most = 0; // records that the table held at its fullest
};

qint64 RandomOperations::Value(const FourFields &record, qint32 field) const
{
    switch (field) {
    case 0:
        return m_values.Rank(record.Name);
    case 1:
        return record.Day.isValid() ? record.Day.toSecsSinceEpoch()
                                    : std::numeric_limits<qint64>::min();
    case 2:
        return record.Amount.Scaled();
    default:
        return m_values.Rank(record.Code);
    }
}

FourFields RandomOperations::RandomRecord()
{
    const auto any
        = [&](const auto &list) { return list[Random(static_cast<qint32>(list.size()))]; };
    return {any(m_values.Texts), any(m_values.Days), Currency::FromScaled(any(m_values.Amounts)),
        any(m_values.Texts)};
}

RecordStore::Key RandomOperations::RandomKey(qint32 field, qint64 &value)
{
    const FourFields record = RandomRecord();
    value = Value(record, field);
    switch (field) {
    case 0:
        return record.Name;
    case 1:
        return record.Day;
    case 2:
        return record.Amount;
    default:
        return record.Code;
    }
}

void RandomOperations::ExpectRaised(int number, const std::function<void()> &call)
{
    ASSERT_EQ(RaisedBy(call).Number, number) << Where();
}

void RandomOperations::Sort(const std::vector<qint32> &fields)
{
    m_model.Pending = Model::Begun::Nothing;
    const bool atEnd = m_model.AtEnd();
    const int current = atEnd ? 0 : m_model.Order[static_cast<size_t>(m_model.Cursor)];
    std::vector<Model::Row> sorted = m_model.Stored;
    std::stable_sort(sorted.begin(), sorted.end(), [&](const auto &a, const auto &b) {
        for (const qint32 field : fields) {
            if (Value(a.Record, field) != Value(b.Record, field))
                return Value(a.Record, field) < Value(b.Record, field);
        }
        return false;
    });
    m_model.Order.clear();
    for (const Model::Row &row : sorted)
        m_model.Order.push_back(row.Id);
    m_model.SortedBy = fields;
    if (!atEnd)
        m_model.Cursor = static_cast<qint32>(
            std::find(m_model.Order.begin(), m_model.Order.end(), current) - m_model.Order.begin());
}

void RandomOperations::Find()
{
    const qint32 field = Random(4);
    qint64 wanted = 0;
    const RecordStore::Key key = RandomKey(field, wanted);
    m_what = "FindRecord in field " + std::to_string(field);
    Store.FindRecord(m_handle, field, key);

    m_model.Pending = Model::Begun::Nothing;
    m_model.Cursor = m_model.Count();
    qint64 least = 0;
    for (qint32 i = 0; i < m_model.Count(); ++i) {
        const qint64 value = Value(m_model.At(i), field);
        if (value >= wanted && (m_model.AtEnd() || value < least)) {
            m_model.Cursor = i;
            least = value;
        }
    }
    m_model.Status = !m_model.AtEnd() && least == wanted ? 0 : -7;
    m_exact += m_model.Status == 0 ? 1 : 0;
    m_most = std::max(m_most, m_model.Count());
}

void RandomOperations::Write()
{
    m_what = "WriteRecord";
    const FourFields record = RandomRecord();
    if (m_model.Pending == Model::Begun::Nothing) {
        ExpectRaised(StoreErrors::NothingBegun, [&] { Store.WriteRecord(m_handle, record); });
    } else {
        Store.WriteRecord(m_handle, record);
        m_model.PendingRecord = record;
    }
}

void RandomOperations::Update()
{
    m_what = "UpdateRecord";
    if (m_model.Pending == Model::Begun::Nothing) {
        ExpectRaised(StoreErrors::NothingBegun, [&] { Store.UpdateRecord(m_handle); });
        return;
    }
    Store.UpdateRecord(m_handle);
    if (m_model.Pending == Model::Begun::Add) {
        m_model.Stored.push_back({++m_model.LastId, m_model.PendingRecord});
        m_model.Order.push_back(m_model.LastId);
        m_model.Cursor = m_model.Count() - 1;
    } else {
        m_model.At(m_model.Cursor) = m_model.PendingRecord;
    }
    m_model.Pending = Model::Begun::Nothing;
}

void RandomOperations::Restart(bool reopen)
{
    m_what = "close and open again";
    if (reopen)
        Store.CloseDatabase(m_handle);
    m_handle = Open(u"T"_s);
    m_model.SortedBy.clear();
    m_model.Order.clear();
    for (const Model::Row &row : m_model.Stored)
        m_model.Order.push_back(row.Id);
    m_model.Cursor = 0;
    m_model.Status = 0;
    m_model.Pending = Model::Begun::Nothing;
}

void RandomOperations::EndBatch(bool commit)
{
    m_what = commit ? "commit" : "rollback";
    if (commit)
        m_batch->Commit();
    m_batch.reset();
    if (commit)
        return;
    // A sort is no write and stays; the table is read anew and stands on its first record.
    const std::vector<qint32> fields = m_model.SortedBy;
    const qint32 status = m_model.Status;
    m_model = m_beforeBatch;
    m_model.Status = status;
    Sort(fields);
    m_model.Cursor = 0;
}

RandomOperations::Look RandomOperations::Step(bool batches)
{
    const qint32 choice = Random(1000);
    if (choice < 300) {
        Find();
    } else if (choice < 340) {
        m_what = "MoveFirst";
        Store.MoveFirst(m_handle);
        m_model.Cursor = 0;
        m_model.Pending = Model::Begun::Nothing;
    } else if (choice < 420) {
        m_what = "MoveNext";
        Store.MoveNext(m_handle);
        m_model.Cursor = std::min(m_model.Cursor + 1, m_model.Count());
        m_model.Pending = Model::Begun::Nothing;
    } else if (choice < 450) {
        m_what = "MoveCursor";
        Store.MoveCursor(m_handle);
        m_model.Cursor = std::max(m_model.Count() - 1, 0);
        m_model.Pending = Model::Begun::Nothing;
    } else if (choice < 530) {
        const bool find = choice < 490;
        m_what = find ? "FindFromPosition" : "MoveToPosition";
        const qint32 position = Random(m_model.Count() + 4) - 1;
        const auto call = [&] {
            if (find)
                Store.FindFromPosition(m_handle, position);
            else
                Store.MoveToPosition(m_handle, position);
        };
        if (position < 0 || position > m_model.Count() - (find ? 0 : 1)) {
            ExpectRaised(StoreErrors::BadPosition, call);
        } else {
            call();
            m_model.Cursor = position;
            m_model.Pending = Model::Begun::Nothing;
        }
    } else if (choice < 570) {
        QStringList list;
        std::vector<qint32> fields;
        for (qint32 count = Random(3) + 1; count > 0; --count) {
            fields.push_back(Random(4));
            list.append(QString::number(fields.back()));
        }
        m_what = "SortTable " + list.join(u' ').toStdString();
        if (fields.size() == 1 && Random(2) == 0)
            Store.SetKeyField(m_handle, fields.front());
        else
            Store.SortTable(m_handle, list.join(Random(2) == 0 ? u", "_s : u" ,"_s));
        Sort(fields);
    } else if (choice < 690) {
        m_what = "AddRecord";
        Store.AddRecord(m_handle);
        m_model.Pending = Model::Begun::Add;
        m_model.PendingRecord = FourFields();
        if (Random(3) != 0 && m_model.Count() < 60) {
            Write();
            Update();
        }
    } else if (choice < 760) {
        m_what = "EditRecord";
        if (m_model.AtEnd()) {
            ExpectRaised(StoreErrors::BadPosition, [&] { Store.EditRecord(m_handle); });
        } else {
            Store.EditRecord(m_handle);
            m_model.Pending = Model::Begun::Edit;
            m_model.PendingRecord = m_model.At(m_model.Cursor);
            if (Random(2) == 0) {
                Write();
                Update();
            }
        }
    } else if (choice < 850) {
        Write();
        if (Random(4) != 0)
            Update();
    } else if (choice < 890) {
        Update();
    } else if (choice < 960) {
        m_what = "DeleteRecord";
        m_model.Pending = Model::Begun::Nothing;
        if (m_model.AtEnd()) {
            ExpectRaised(StoreErrors::BadPosition, [&] { Store.DeleteRecord(m_handle, 2); });
        } else {
            Store.DeleteRecord(m_handle, 2);
            const auto at = m_model.Order.begin() + m_model.Cursor;
            m_model.Stored.erase(
                m_model.Stored.begin() + (&m_model.ById(*at) - m_model.Stored.data()));
            m_model.Order.erase(at);
        }
    } else if (!batches) {
        if (choice < 980) {
            Restart(true);
            return Random(2) == 0 ? Look::Full : Look::Nothing;
        }
    } else if (m_batch && choice < 970) {
        EndBatch(Random(4) != 0);
        if (Random(3) == 0)
            Restart(true);
        return Random(2) == 0 ? Look::Full : Look::Nothing;
    }
    if (batches && !m_batch) {
        m_batch = std::make_unique<RecordStore::Batch>(Store, m_handle);
        m_beforeBatch = m_model;
    }
    return Look::Full;
}

void RandomOperations::CheckCurrent()
{
    ASSERT_EQ(Store.GetRecordCount(m_handle), m_model.Count()) << Where();
    ASSERT_EQ(Store.GetRecordPosition(m_handle), m_model.Cursor) << Where();
    ASSERT_EQ(Store.GetCurrentIndex(m_handle), m_model.Cursor) << Where();
    ASSERT_EQ(Store.IsEndOfTable(m_handle), m_model.AtEnd()) << Where();
    ASSERT_EQ(Store.GetLastStatus(m_handle), m_model.Status) << Where();
    FourFields record;
    ASSERT_EQ(Store.ReadRecord(m_handle, record), !m_model.AtEnd()) << Where();
    ASSERT_EQ(record, m_model.AtEnd() ? FourFields() : m_model.At(m_model.Cursor)) << Where();
    if (m_model.AtEnd())
        return;
    ASSERT_EQ(Store.ReadField(m_handle, 3), record.Code) << Where();
}

void RandomOperations::Check()
{
    CheckCurrent();
    if (HasFatalFailure() || m_model.Pending != Model::Begun::Nothing)
        return; // walking would drop what was begun
    for (qint32 i = 0; i < m_model.Count(); ++i) {
        Store.FindFromPosition(m_handle, i);
        FourFields record;
        ASSERT_TRUE(Store.ReadRecord(m_handle, record)) << Where();
        ASSERT_EQ(record, m_model.At(i)) << Where() << ", position " << i;
    }
    Store.FindFromPosition(m_handle, m_model.Cursor);
}

void RandomOperations::Run(unsigned start, int steps, bool batches)
{
    m_start = start;
    m_random = std::mt19937(start);
    Store.CloseDatabase(Create(u"T"_s, FourFields::SchemaText));
    m_model = Model();
    Restart(false);
    for (m_step = 0; m_step < steps; ++m_step) {
        const Look look = Step(batches);
        if (!HasFatalFailure() && look == Look::Full)
            Check();
        if (HasFatalFailure())
            return;
    }
    m_batch.reset();
    Store.DeleteDatabase(PathOf(u"T"_s), 0, 0);
}

} // namespace

TEST_F(RandomOperations, BehaveLikeAPlainVectorInBatches)
{
    for (unsigned start = 1; start <= 60 && !HasFatalFailure(); ++start)
        Run(start, 5000, true);
    // The comparison is worth something only if there was something to find.
    EXPECT_GT(m_exact, 20000);
    EXPECT_GT(m_most, 40);
}

TEST_F(RandomOperations, BehaveLikeAPlainVectorOneWriteAtATime)
{
    for (unsigned start = 1001; start <= 1100 && !HasFatalFailure(); ++start)
        Run(start, 500, false);
    EXPECT_GT(m_exact, 4000);
    EXPECT_GT(m_most, 15);
}
