// What holds for the program on Windows alone: how it keeps a second one out, how it starts the
// accounting client, and what it writes where Windows programs write it.

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/System.h"
#include "tests/endtoend/driver/VirtualDisplay.h"
#include "tests/endtoend/driver/WorkPlace.h"
#include "tests/support/PrintQt.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <windows.h>

#include <winternl.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

const QString SynchroniseFirst = u"Please perform a synchronization first."_s;

/// Where a 64-bit process keeps its working folder.
constexpr int FolderInParameters = 0x38;

const wchar_t *Wide(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

QByteArray ContentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void WriteFile(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        throw std::runtime_error("cannot be written: " + path.toStdString());
}

/// The folder that a relative path means in that process.
QString WorkingFolderOf(qint64 process)
{
    const HANDLE handle = OpenProcess(
        PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, static_cast<DWORD>(process));
    PROCESS_BASIC_INFORMATION basic{};
    NtQueryInformationProcess(handle, ProcessBasicInformation, &basic, sizeof basic, nullptr);
    PEB block{};
    ReadProcessMemory(handle, basic.PebBaseAddress, &block, sizeof block, nullptr);
    // The headers call it reserved; debuggers know where it stands.
    const auto *at = reinterpret_cast<const char *>(block.ProcessParameters) + FolderInParameters;
    UNICODE_STRING folder{};
    ReadProcessMemory(handle, at, &folder, sizeof folder, nullptr);
    QString text(folder.Length / 2, QChar());
    ReadProcessMemory(handle, folder.Buffer, text.data(), folder.Length, nullptr);
    CloseHandle(handle);
    return text;
}

class WindowsWays : public testing::Test
{
protected:
    WorkPlace m_place;
    VirtualDisplay m_display;
};

/// An accounting installation whose client writes down how it was started.
class RecordedRoot
{
public:
    explicit RecordedRoot(const QString &root)
        : m_root(QDir::toNativeSeparators(root))
    {
        QDir().mkpath(m_root + u"/soa"_s);
        QDir().mkpath(m_root + u"/Home"_s);
        WriteFile(m_root + u"/soa/startup.m4p"_s, {});
        if (!QFile::copy(QCoreApplication::applicationDirPath() + u"/recorder.exe"_s, Client()))
            throw std::runtime_error("the recorder cannot be copied");
    }

    QString Root() const { return m_root; }
    QString Client() const { return m_root + u"\\Home\\pvxwin32.exe"_s; }
    QString Arguments() const
    {
        return u"\"%1\\launcher\\sota.ini\" \"%1\\kv\\kv_startup.m4p\" -ARG RUN_DIRECT UION * "
               u"WLWXBA"_s.arg(m_root);
    }
    QByteArray LaunchFile() const
    {
        return (m_root + u"\r\n"_s + Arguments() + u"\r\n"_s).toUtf8();
    }

    /// Command line, working folder, and how its window is to be shown.
    QStringList WaitForRecord() const
    {
        const QString path = Client() + u".txt"_s;
        ProgramUnderTest::WaitUntil(u"the client"_s, [&] { return QFile::exists(path); });
        const QByteArray bytes = ContentOf(path);
        return QString::fromWCharArray(
            reinterpret_cast<const wchar_t *>(bytes.constData()), bytes.size() / 2)
            .split(u'\n', Qt::SkipEmptyParts);
    }

private:
    QString m_root;
};

} // namespace

TEST_F(WindowsWays, TheHeldLockFileRefusesASecondProgramUntilTheFirstIsGone)
{
    const QString lock = m_place.InProgramFolder(u"WLRemote.txt"_s);
    {
        ProgramUnderTest first(m_place.ProgramFolder(), m_display);
        first.WaitForMessage(SynchroniseFirst);
        const HANDLE file = CreateFileW(Wide(lock), GENERIC_WRITE,
            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
        EXPECT_EQ(file, INVALID_HANDLE_VALUE) << "others may not write into it";
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_SHARING_VIOLATION));

        ProgramUnderTest second(m_place.ProgramFolder(), m_display);
        second.WaitForMessage(u"Error 70; Worklog Remote is already running."_s);
        EXPECT_FALSE(second.IsOpen(u"frmEntryList"_s));
        second.AnswerByKeys(u"Return"_s);
        second.WaitForEnd();
        EXPECT_TRUE(first.IsOpen(u"frmEntryList"_s));
        first.Kill();
    }
    EXPECT_TRUE(QFile::exists(lock));
    ProgramUnderTest next(m_place.ProgramFolder(), m_display);
    next.WaitForMessage(SynchroniseFirst);
}

TEST_F(WindowsWays, TheLaunchFileIsATextFileAsWindowsProgramsWriteIt)
{
    m_place.RemoveLaunchFile();
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForMessage(SynchroniseFirst);
    program.AnswerByKeys(u"Return"_s);
    program.ChooseByKeys(u"Options"_s, u"Configure"_s);
    const QString file = m_place.InProgramFolder(u"mas90.ini"_s);
    EXPECT_TRUE(file.contains(u":\\"_s));
    program.WaitForMessage(u"Error #53 (File not found: %1)."_s.arg(file));
    program.AnswerByKeys(u"Return"_s);
    program.WaitForFocus(u"optMas90_0"_s);
    program.Key(u"Tab"_s);
    program.Enter(u"txtMas90Path"_s, m_place.Root());
    program.Key(u"alt+a"_s);
    program.WaitUntilClosed(u"frmConfigure"_s);

    EXPECT_EQ(ContentOf(file),
        u"%1\r\n\"%1\\launcher\\sota.ini\" \"%1\\kv\\kv_startup.m4p\" -ARG RUN_DIRECT UION * "
        u"WLWXBA\r\n"_s.arg(m_place.Root())
            .toUtf8());
}

TEST_F(WindowsWays, ALaunchFileOutOfAnEditorIsReadAsItIs)
{
    const RecordedRoot root(m_place.FolderOfRoot() + u"/Buchhaltung für Maß/mas90"_s);
    WriteFile(m_place.InProgramFolder(u"mas90.ini"_s), "\xef\xbb\xbf" + root.LaunchFile() + "\r\n");
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    program.WaitForMessage(SynchroniseFirst);
    program.AnswerByKeys(u"Return"_s);
    program.WaitUntilActive();
    program.Key(u"alt+s"_s);
    EXPECT_EQ(root.WaitForRecord()[0],
        u"%1 -hd %2 \"%3\""_s.arg(root.Client(), root.Arguments(), m_place.ProgramFolder()));
    program.WaitForMessage(SynchroniseFirst);
}

namespace {

class StartedClient : public testing::Test
{
protected:
    /// Presses the button of a program that was never synchronised, as far as the client's record.
    QStringList Start(ProgramUnderTest &program, const RecordedRoot &root)
    {
        program.WaitForMessage(SynchroniseFirst);
        program.AnswerByKeys(u"Return"_s);
        program.WaitUntilActive();
        program.Key(u"alt+s"_s);
        return root.WaitForRecord();
    }

    const WorkPlace m_place{u"Worklog Remote 1"_s};
    const VirtualDisplay m_display;
};

/// Keeps the recorder running until it is let go.
class RecorderHeld
{
public:
    ~RecorderHeld() { CloseHandle(m_event); }

    void LetGo() { SetEvent(m_event); }

private:
    HANDLE m_event = CreateEventW(nullptr, TRUE, FALSE, L"worklog-recorder");
};

} // namespace

TEST_F(StartedClient, IsToldEverythingInOneLineWithStarsForBlanks)
{
    const RecordedRoot root(m_place.FolderOfRoot() + u"/accounting/mas90"_s);
    WriteFile(m_place.InProgramFolder(u"mas90.ini"_s), root.LaunchFile());
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    const QString place = m_place.FolderOfRoot();
    const QString home = place + u"\\accounting\\mas90"_s;
    EXPECT_THAT(Start(program, root),
        ElementsAre(u"%1\\Home\\pvxwin32.exe -hd \"%1\\launcher\\sota.ini\" "
                    u"\"%1\\kv\\kv_startup.m4p\" -ARG RUN_DIRECT UION * WLWXBA "
                    u"\"%2\\Worklog*Remote*1\""_s.arg(home, place),
            home + u"\\Home"_s, QString::number(SW_SHOWNORMAL)));
    program.WaitForMessage(SynchroniseFirst);
}

TEST_F(StartedClient, IsWaitedForWithoutAWindowHoweverLongItRuns)
{
    const RecordedRoot root(m_place.FolderOfRoot() + u"/my accounting/mas90"_s);
    WriteFile(m_place.InProgramFolder(u"mas90.ini"_s), root.LaunchFile());
    RecorderHeld held;
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    EXPECT_THAT(Start(program, root)[0].toStdString(),
        testing::HasSubstr("my accounting\\mas90\\Home\\pvxwin32.exe -hd \""));
    EXPECT_FALSE(program.IsOpen(u"frmEntryList"_s));
    EXPECT_TRUE(program.IsRunning());
    ProgramUnderTest second(m_place.ProgramFolder(), m_display);
    second.WaitForMessage(u"Error 70; Worklog Remote is already running."_s);
    second.AnswerByKeys(u"Return"_s);
    second.WaitForEnd();
    EXPECT_TRUE(program.MessageText().isEmpty());
    EXPECT_FALSE(program.IsOpen(u"frmEntryList"_s));

    held.LetGo();
    program.WaitForMessage(SynchroniseFirst);
    EXPECT_TRUE(program.IsOpen(u"frmEntryList"_s));
}

TEST_F(StartedClient, WorksOnAnotherDriveAndTheProgramIsBackOnItsOwnAfterwards)
{
    const QTemporaryDir other(u"Z:/tmp/worklog-XXXXXX"_s); // where a Wine has the whole machine
    const RecordedRoot root(other.filePath(u"mas90"_s));
    WriteFile(m_place.InProgramFolder(u"mas90.ini"_s), root.LaunchFile());
    RecorderHeld held;
    ProgramUnderTest program(m_place.ProgramFolder(), m_display);
    const QString before = WorkingFolderOf(program.ProcessId());
    EXPECT_FALSE(before.startsWith(u"Z:"_s)) << before.toStdString();
    const QStringList record = Start(program, root);
    EXPECT_THAT(
        record[0].toStdString(), testing::StartsWith(root.Client().toStdString() + " -hd "));
    EXPECT_EQ(record[1], root.Root() + u"\\Home"_s);
    EXPECT_THAT(WorkingFolderOf(program.ProcessId()).toStdString(),
        testing::StartsWith(root.Root().toStdString() + "\\Home"));

    held.LetGo();
    program.WaitForMessage(SynchroniseFirst);
    EXPECT_EQ(WorkingFolderOf(program.ProcessId()), before);
}
