// A disk that takes its time to flush: the window stays painted, one command runs at a time, and
// what the user does meanwhile is done afterwards.

#include "store/StoreErrors.h"
#include "tests/entry/EntryWindow.h"
#include "tests/entry/FailingFiles.h"
#include "tests/support/BusyMoment.h"
#include "tests/support/Raised.h"

#include <atomic>
#include <chrono>
#include <limits>
#include <semaphore>

using namespace Qt::StringLiterals;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

/// Flushes wait for the test from the moment it wants them to.
class SlowFlushes
{
public:
    SlowFlushes()
    {
        m_files.BeforeFlush([this] {
            if (m_wait && !m_go.try_acquire_for(std::chrono::seconds(10)))
                m_gaveUp = true;
        });
    }
    void Begin() { m_wait = true; }
    void End()
    {
        m_wait = false;
        m_go.release();
    }
    void EndWithAFailure()
    {
        m_files.FailAt(1, std::numeric_limits<int>::max() / 2);
        End();
    }
    void Repair() { m_files.Stop(); }
    bool GaveUp() const { return m_gaveUp; }

private:
    FailingFiles m_files;
    std::counting_semaphore<> m_go{0};
    std::atomic<bool> m_wait = false;
    std::atomic<bool> m_gaveUp = false;
};

class SlowDisk : public EntryWindow
{
protected:
    SlowDisk()
    {
        Company.Customers = {SampleCustomer(u"0100"_s, u"Acme"_s)};
        Company.Activities = {SampleActivity(u"CONS"_s, u"Consulting"_s)};
    }
    ~SlowDisk() override { Program.reset(); } // before its disk goes

    void EnterAnEntry()
    {
        for (const auto &[box, code] :
            {std::pair{"txtCustomer", u"0100"_s}, std::pair{"txtActivity", u"CONS"_s}}) {
            GoTo(box);
            Type(code);
            Press(Qt::Key_Return);
        }
        GoTo("txtHours");
        Type(u"2"_s);
        GoTo("txtDescription");
        Type(u"Audit"_s);
        ASSERT_THAT(Messages.Texts(), IsEmpty());
    }

    SlowFlushes m_disk;
};

} // namespace

TEST_F(SlowDisk, KeepsTheWindowPaintedAndSavesTheEntryOnce)
{
    Start();
    EnterAnEntry();
    const BusyMoment busy(
        Window(),
        [&] {
            QTest::mouseClick(&Any("cmdOK"), Qt::LeftButton);
            QTest::keyClicks(&Box("txtDescription"), u"!"_s);
        },
        [&] { m_disk.End(); });
    m_disk.Begin();
    ClickButton("cmdOK");
    EXPECT_FALSE(m_disk.GaveUp());
    EXPECT_TRUE(busy.WasPainted());
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    ASSERT_THAT(Stored(), SizeIs(1));
    EXPECT_EQ(Stored()[0].Description, u"Audit"_s);
    // What was typed meanwhile belongs to what is shown after the save: a new entry.
    EXPECT_EQ(Text("txtDescription"), u"!"_s);
    EXPECT_TRUE(Window().isWindowModified());
}

TEST_F(SlowDisk, SynchronizesAfterTheEntryIsSaved)
{
    Start();
    EnterAnEntry();
    const BusyMoment busy(
        Window(), [&] { QTest::mouseClick(&Any("cmdSync"), Qt::LeftButton); },
        [&] { m_disk.End(); });
    m_disk.Begin();
    ClickButton("cmdOK");
    EXPECT_TRUE(busy.HasBeen());
    LetEventsRun();
    ASSERT_THAT(Stored(), SizeIs(1));
    // There is no launch file, which only a synchronization needs.
    ASSERT_THAT(Messages.Texts(), SizeIs(1));
    EXPECT_TRUE(Messages.Texts()[0].contains(u"mas90.ini"_s)) << Messages.Texts()[0].toStdString();
}

TEST_F(SlowDisk, DeletesTheEntryOnceAndAsksAgainForTheNext)
{
    Company.Entries
        = {SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(1)),
            SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 10), Currency::FromWhole(1))};
    Start();
    ClickRow(1);
    Messages.Answers = {MessageAnswer::Yes, MessageAnswer::No};
    const BusyMoment busy(
        Window(), [&] { QTest::mouseClick(&Any("cmdDel"), Qt::LeftButton); },
        [&] { m_disk.End(); });
    m_disk.Begin();
    ClickButton("cmdDel");
    EXPECT_TRUE(busy.WasPainted());
    EXPECT_THAT(Stored(), SizeIs(1));
    EXPECT_THAT(Messages.Texts(), SizeIs(2));
}

TEST_F(SlowDisk, ReportsASlowFlushThatFailsAndKeepsTheEdits)
{
    Start();
    EnterAnEntry();
    const BusyMoment busy(
        Window(), [] {}, [&] { m_disk.EndWithAFailure(); });
    m_disk.Begin();
    ClickButton("cmdOK");
    EXPECT_TRUE(busy.WasPainted());
    ASSERT_THAT(Messages.Texts(), SizeIs(1));
    EXPECT_TRUE(Messages.Texts()[0].startsWith(u"Error #1013 ("_s));
    EXPECT_EQ(Text("txtDescription"), u"Audit"_s);
    EXPECT_TRUE(Window().isWindowModified());
    m_disk.Repair();
    EXPECT_THAT(Stored(), IsEmpty());
    ClickButton("cmdOK");
    EXPECT_THAT(Stored(), SizeIs(1));
}

TEST_F(SlowDisk, LetsNoOtherCallIntoTheStoreMeanwhile)
{
    BuildSampleCompanies(Folder.path(), {Company});
    RecordStore store;
    store.SetCreator(CodeNumber(SampleCodes().Creator));
    const QString path = Folder.path() + u"/ABC%1-WkLg"_s;
    const auto entries = store.OpenDatabase(1, path.arg(u"Entries"_s), 0, 0, 0, 0, 3);
    const auto customers = store.OpenDatabase(1, path.arg(u"Customers"_s), 0, 0, 0, 0, 3);
    QWidget window;
    window.show();
    Raised ofTheSame;
    Raised ofAnother;
    Raised ofOpening;
    const BusyMoment busy(
        window,
        [&] {
            EXPECT_TRUE(store.IsCommitting());
            ofTheSame = RaisedBy([&] { store.MoveFirst(entries); });
            ofAnother = RaisedBy([&] { store.MoveFirst(customers); });
            ofOpening
                = RaisedBy([&] { store.OpenDatabase(1, path.arg(u"Projects"_s), 0, 0, 0, 0, 3); });
        },
        [&] { m_disk.End(); });
    m_disk.Begin();
    store.AddRecord(entries);
    store.WriteRecord(entries, EntryRecord());
    store.UpdateRecord(entries);
    EXPECT_TRUE(busy.HasBeen());
    EXPECT_FALSE(store.IsCommitting());
    for (const Raised &raised : {ofTheSame, ofAnother, ofOpening})
        EXPECT_EQ(raised.Number, StoreErrors::Locked);
    EXPECT_EQ(store.GetRecordCount(entries), 1);
}
