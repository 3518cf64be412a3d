#include "tests/reliability/ProgramOnDisk.h"

#include "platform/clsGrid.h"
#include "tests/support/Windows.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QRadioButton>
#include <QTimer>

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

const QDate Day(2026, 3, 2);

GlobalOptionsRecord RememberedCompany()
{
    GlobalOptionsRecord record;
    record.Last_Company = u"ABC"_s;
    record.Entries_Exist = u"N"_s;
    return record;
}

void WriteFile(const QString &name, const QByteArray &contents)
{
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        throw std::runtime_error(name.toStdString());
}

void FillNewEntry(ProgramOnDisk &program)
{
    program.TypeInto("txtCustomer", u"0100"_s);
    program.TypeInto("txtActivity", u"CONS"_s);
    program.TypeInto("txtHours", u"2"_s);
    program.TypeInto("txtDescription", u"typed with care"_s);
}

void EditFirstEntry(ProgramOnDisk &program)
{
    program.ClickRow(1);
    program.TypeInto("txtDescription", u"typed with care"_s);
}

void ChangeCompany(ProgramOnDisk &program)
{
    auto &list = Control<QComboBox>(*program.Window(), "cboCompany");
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down); // opens the list
    LetEventsRun();
    QTest::keyClick(list.view(), Qt::Key_Down);
    QTest::keyClick(list.view(), Qt::Key_Return);
    LetEventsRun();
}

void Press(ProgramOnDisk &program, const char *button)
{
    program.Click(button);
}

void Remove(const QString &folder, const char *name)
{
    QFile::remove(folder + u'/' + QString::fromLatin1(name) + u".db"_s);
}

void Nothing(ProgramOnDisk &) { }

} // namespace

void ProgramOnDisk::MakeFolder(const QString &folder)
{
    SampleCompany company;
    company.Entries = MadeEntries();
    company.Options.Sync_Option = u"3"_s;
    BuildSampleCompanies(
        folder, {company, SampleCompany(u"XYZ"_s, u"Xylo"_s)}, RememberedCompany());
    const QString root = folder + u"/mas90"_s;
    QDir().mkpath(root + u"/soa"_s);
    QDir().mkpath(root + u"/Home"_s);
    WriteFile(root + u"/soa/startup.m4p"_s, {});
    WriteFile(root + u"/Home/pvxwin32.exe"_s, {});
}

std::vector<EntryRecord> ProgramOnDisk::MadeEntries()
{
    std::vector<EntryRecord> entries;
    for (const QString &description : {u"first"_s, u"second"_s})
        entries.push_back(SampleEntry(u"0100"_s, {}, u"CONS"_s, Day, Currency::FromWhole(2),
            Currency::FromWhole(90), description));
    return entries;
}

void ProgramOnDisk::CopyFolder(const QString &from, const QString &to)
{
    QDir(to).removeRecursively();
    QDir().mkpath(to);
    for (const QString &name : QDir(from).entryList(QDir::Files)) {
        if (!QFile::copy(from + u'/' + name, to + u'/' + name))
            throw std::runtime_error(name.toStdString());
    }
    // The installation is only read, so that one will do.
    WriteFile(to + u"/mas90.ini"_s, (from + u"/mas90\n-ARG X\n"_s).toUtf8());
}

ProgramOnDisk::ProgramOnDisk(const QString &folder, clsProcess *process)
    : m_folder(folder)
    , m_program(std::make_unique<clsProgram>(folder,
          ProgramServices{Messages, m_keys, process != nullptr ? *process : Process, m_clock,
              m_settings, m_browser}))
{
    QObject::connect(m_program.get(), &clsProgram::Ended, [this] { HasEnded = true; });
}

void ProgramOnDisk::StartUp()
{
    m_program->StartUp();
    if (Window() != nullptr && !ShowActive(*Window()))
        throw std::runtime_error("the window does not take the keys");
    LetEventsRun();
}

void ProgramOnDisk::ClickRow(int row)
{
    auto &grid = Control<clsGrid>(*Window(), "msgEntryList");
    const QModelIndex index = grid.model()->index(row - 1, 2);
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(index).center());
    LetEventsRun();
}

void ProgramOnDisk::TypeInto(const char *box, const QString &text)
{
    auto &edited = Control<QLineEdit>(*Window(), box);
    edited.setFocus(Qt::TabFocusReason);
    LetEventsRun();
    edited.selectAll(); // also where the box had the focus already
    QTest::keyClicks(&edited, text);
    LetEventsRun();
}

void ProgramOnDisk::Click(const char *button)
{
    QTest::mouseClick(&Control<QWidget>(*Window(), button), Qt::LeftButton);
    LetEventsRun();
}

QString ProgramOnDisk::Text(const char *box) const
{
    return Control<QLineEdit>(*Window(), box).text();
}

void ProgramOnDisk::CloseDialogOf(const std::function<void()> &action)
{
    DialogRows.clear();
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget *const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            return;
        timer.stop();
        if (LookAtDialog)
            LookAtDialog(*dialog);
        if (const auto *grid = dialog->findChild<clsGrid *>()) {
            for (int row = 1; row < grid->Rows(); ++row) {
                for (int column = 0; column < grid->Cols(); ++column)
                    DialogRows += grid->TextMatrix(row, column) + u'|';
            }
        }
        dialog->close();
    });
    timer.start(0);
    action();
}

void ProgramOnDisk::ChooseSyncOption(int option)
{
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        QWidget *const dialog = QApplication::activeModalWidget();
        if (dialog == nullptr)
            return;
        timer.stop();
        const std::string name = "optSyncOption" + std::to_string(option);
        Control<QRadioButton>(*dialog, name.c_str()).click();
        QTest::mouseClick(&Control<QWidget>(*dialog, "cmdAccept"), Qt::LeftButton);
        dialog->close(); // when the choice could not be written it stays open
    });
    timer.start(0);
    Control<QAction>(*Window(), "mnuSync").trigger();
    LetEventsRun();
}

QStringList ProgramOnDisk::Failures() const
{
    QStringList texts;
    for (const clsRecordedMessages::Box &box : Messages.Shown) {
        if (box.Buttons == MessageButtons::OK)
            texts.append(box.Text);
    }
    return texts;
}

const std::array<Operation, 11> Operations = {{
    {"save of a new entry", FillNewEntry, [](ProgramOnDisk &program) { Press(program, "cmdOK"); }},
    {"save of a changed entry", EditFirstEntry,
        [](ProgramOnDisk &program) { Press(program, "cmdOK"); }},
    {"delete", [](ProgramOnDisk &program) { program.ClickRow(1); },
        [](ProgramOnDisk &program) {
            program.Messages.Answers = {MessageAnswer::Yes};
            Press(program, "cmdDel");
        }},
    {"start-up", nullptr, [](ProgramOnDisk &program) { program.StartUp(); }},
    {"start-up that creates the global options", nullptr,
        [](ProgramOnDisk &program) { program.StartUp(); }},
    {"start-up that creates the entries", nullptr,
        [](ProgramOnDisk &program) { program.StartUp(); }},
    {"last company", ChangeCompany,
        [](ProgramOnDisk &program) {
            QTest::keyClick(program.Window(), Qt::Key_Escape);
            LetEventsRun();
        }},
    {"entries exist", Nothing, [](ProgramOnDisk &program) { Press(program, "cmdSync"); }},
    {"options", Nothing, [](ProgramOnDisk &program) { program.ChooseSyncOption(1); }},
    {"hours summary", Nothing,
        [](ProgramOnDisk &program) {
            program.CloseDialogOf([&] { Press(program, "cmdHrsSumm"); });
        }},
    {"deleting the databases", Nothing,
        [](ProgramOnDisk &program) {
            program.Messages.Answers = {MessageAnswer::Yes};
            Control<QAction>(*program.Window(), "mnuDeleteDatabases").trigger();
            LetEventsRun();
        }},
}};

const Operation &OperationCalled(const QByteArray &name)
{
    const auto at = std::find_if(Operations.begin(), Operations.end(),
        [&](const Operation &operation) { return name == operation.Name; });
    if (at == Operations.end())
        throw std::runtime_error("no such operation: " + name.toStdString());
    return *at;
}

void PrepareFolder(const Operation &operation, const QString &folder)
{
    if (QByteArray(operation.Name).contains("creates the global options"))
        Remove(folder, "GlobalOptions-WkLg");
    if (QByteArray(operation.Name).contains("creates the entries"))
        Remove(folder, "ABCEntries-WkLg");
}

namespace {

template <class Record>
std::vector<Record> Stored(const QString &folder, const QString &name)
{
    RecordStore store;
    store.SetCreator(CodeNumber(SampleCodes().Creator));
    const auto handle = store.OpenDatabase(1, folder + u'/' + name, 0, 0, 0, 0, 3);
    std::vector<Record> records;
    if (handle == 0)
        return records;
    for (store.MoveFirst(handle); !store.IsEndOfTable(handle); store.MoveNext(handle))
        store.ReadRecord(handle, records.emplace_back());
    return records;
}

} // namespace

std::vector<EntryRecord> StoredEntries(const QString &folder)
{
    return Stored<EntryRecord>(folder, u"ABCEntries-WkLg"_s);
}

QString StoredSyncOption(const QString &folder)
{
    return Stored<OptionsRecord>(folder, u"ABCOptions-WkLg"_s).at(0).Sync_Option;
}

GlobalOptionsRecord StoredGlobalOptions(const QString &folder)
{
    return Stored<GlobalOptionsRecord>(folder, u"GlobalOptions-WkLg"_s).at(0);
}

bool operator==(const EntryRecord &a, const EntryRecord &b)
{
    return a.Fields() == b.Fields();
}

void PrintTo(const EntryRecord &record, std::ostream *out)
{
    std::apply([&](const auto &...field) { ((*out << testing::PrintToString(field) << ' '), ...); },
        record.Fields());
}
