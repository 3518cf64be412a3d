// An eight-hour day in the main window: saves, lookups and dialogs by the thousand, and no more
// memory at its end than after its first hour.

#include "entry/EntryColumn.h"
#include "tests/reliability/ProgramOnDisk.h"
#include "tests/support/HeldMemory.h"
#include "tests/support/Soak.h"
#include "tests/support/Windows.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <malloc.h>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

/// What the process has in memory, in kilobytes, with nothing kept back that is free; under the
/// address sanitizer, which does keep it, what is held.
qint64 MemoryKilobytes()
{
#ifdef __SANITIZE_ADDRESS__
    return HeldBytes() / 1024;
#endif
    ::malloc_trim(0);
    QFile status(u"/proc/self/status"_s);
    EXPECT_TRUE(status.open(QIODevice::ReadOnly));
    for (const QByteArray &line : status.readAll().split('\n')) {
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').first().toLongLong();
    }
    return 0;
}

class WorkingDay : public testing::Test
{
protected:
    WorkingDay()
    {
        SampleCompany company;
        for (int i = 0; i < 200; ++i)
            company.Entries->push_back(
                SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 1, 1).addDays(i % 60),
                    Currency::FromWhole(i % 9 + 1), {}, u"entry %1"_s.arg(i)));
        BuildSampleCompanies(m_folder.path(), {company});
        m_program = std::make_unique<ProgramOnDisk>(m_folder.path());
        m_program->StartUp();
    }

    /// A save of a changed entry, now and then of a new one whose like is deleted again. No two
    /// texts of a day are the same.
    void Save()
    {
        const QString text = u"text %1"_s.arg(++m_saves);
        if (m_saves % 10 == 0) {
            m_program->TypeInto("txtCustomer", u"0100"_s);
            m_program->TypeInto("txtActivity", u"CONS"_s);
            m_program->TypeInto("txtHours", u"2"_s);
            m_program->TypeInto("txtDescription", text);
            m_program->Click("cmdOK");
            m_program->Messages.Answers = {MessageAnswer::Yes};
            m_program->ClickRow(1);
            m_program->Click("cmdDel");
            m_program->Messages.Shown.clear();
            return;
        }
        m_program->ClickRow(m_saves % 8 + 1);
        m_program->TypeInto("txtDescription", text);
        m_program->Click("cmdOK");
    }
    void LookUp(int number)
    {
        const char *const buttons[] = {"cmdCustomer", "cmdActivity"};
        m_program->CloseDialogOf([&] { m_program->Click(buttons[number % 2]); });
    }
    void OpenDialog(int number)
    {
        const char *const buttons[] = {"cmdHrsSumm", "cmdTransFilter"};
        m_program->CloseDialogOf([&] { m_program->Click(buttons[number % 2]); });
    }
    /// One hour of the eight.
    void Hour(int saves, int lookups, int dialogs)
    {
        for (int i = 0; i < saves; ++i)
            Save();
        for (int i = 0; i < lookups; ++i)
            LookUp(i);
        for (int i = 0; i < dialogs; ++i)
            OpenDialog(i);
        m_program->Click("cmdUndo");
    }

    QTemporaryDir m_folder{SampleFolderTemplate()};
    std::unique_ptr<ProgramOnDisk> m_program;
    int m_saves = 0;
};

} // namespace

TEST_F(WorkingDay, EndsWithTheMemoryOfItsFirstHour)
{
    const int saves = Rounds(30, 625);
    const int lookups = Rounds(8, 125);
    const int dialogs = Rounds(2, 25);
    Hour(saves, lookups, dialogs);
    const qint64 before = MemoryKilobytes();
    for (int hour = 2; hour <= 8; ++hour)
        Hour(saves, lookups, dialogs);
    const qint64 after = MemoryKilobytes();
    EXPECT_THAT(m_program->Messages.Texts(), IsEmpty());
    EXPECT_EQ(StoredEntries(m_folder.path()).size(), 200U);
    TellCount("saves of a day", 8LL * saves);
    TellCount("lookups of a day", 8LL * lookups);
    TellCount("dialogs of a day", 8LL * dialogs);
    TellCount("memory after the first hour, KB", before);
    TellCount("memory after the last, KB", after);
    EXPECT_LT(after, before + before / 20);
}
