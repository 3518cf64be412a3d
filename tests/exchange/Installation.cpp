#include "tests/exchange/Installation.h"

#include "platform/Paths.h"
#include "store/FieldText.h"
#include "tests/support/Deadline.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>

#include <array>
#include <cstdio>
#include <filesystem>

using namespace Qt::StringLiterals;

namespace {

QByteArray Contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Whole pages of entries differ in these alone: the day of January 2024, and what is added to the
/// hours, in ten-thousandths, and to the amount.
QByteArray UploadLine(int number)
{
    static constexpr std::array<int, 12> days = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    int day = number % 365;
    int month = 0;
    while (day >= days.at(static_cast<size_t>(month)))
        day -= days.at(static_cast<size_t>(month++));
    std::array<char, 200> line = {};
    std::snprintf(line.data(), line.size(),
        "0100,1000,CONSULT,2024-%02d-%02d 00:00:00,1,N,N,N,4,,N,N,%d.%04d,95.0000,%d.%04d,1.0000,"
        "0.0000,0.0000,Entry %d\r\n",
        month + 1, day + 1, (75000 + number) / 10000, (75000 + number) % 10000,
        (7125000 + 95 * number) / 10000, (7125000 + 95 * number) % 10000, number);
    return line.data();
}

const QByteArray UploadHeader
    = "Customer_Number,Project_Number,Activity_Number,Date,Billing_Status,Mgmt_Approval,"
      "Sec_Approval,On_Hold,Billing_Option,Multiplier_Number,Rate_Overridden,Reimburse,Hours,Rate,"
      "Amount,Multiplier_Factor,Exp_Markup_Percent,Exp_Markup_Amount,Description\r\n";

/// A link is enough to make the client lie in this installation's Home.
void InstallClient(const QString &path)
{
    const std::filesystem::path client(EXCHANGE_CLIENT);
    std::error_code failed;
    std::filesystem::create_hard_link(client, path.toStdString(), failed);
    if (failed)
        std::filesystem::copy_file(client, path.toStdString());
}

QString FieldText(const QString &value)
{
    return value;
}

QString FieldText(const QDateTime &value)
{
    return QString::fromStdString(DateText(SecondsFromDate(value)));
}

QString FieldText(Currency value)
{
    return FormatCurrency(value, 4, LeadingZero::Yes);
}

} // namespace

Installation::Installation()
    : Root(JoinPath(QDir::toNativeSeparators(m_folder.path()), u"root"_s))
    , Worklog(JoinPath(Root, u"worklog"_s))
    , Program(JoinPath(QDir::toNativeSeparators(m_programs.path()), u"Pröbe folder"_s))
{
    EXPECT_TRUE(m_folder.isValid() && m_programs.isValid());
    for (const QString &folder : {Worklog, Program, JoinPath(Root, u"Home"_s)})
        EXPECT_TRUE(QDir().mkpath(folder));
    InstallClient(Client());
    AddCompany(u"ABC"_s);
}

QString Installation::Client() const
{
    return JoinPath(JoinPath(Root, u"Home"_s), u"pvxwin32.exe"_s);
}

void Installation::AddCompany(const QString &code)
{
    m_companies.append(code);
    WriteCompanyList();
    Write(code + u"/Options.csv"_s,
        "Customer_Term,Project_Term,Activity_Term,Employee_Term,Billing_Option_Setting,"
        "Mgmt_Approval_In_Use,Sec_Approval_In_Use,Lock_Approved,On_Hold_In_Use,"
        "Billing_Option_Switch,Expenses,Project_Required,Accounting_Name,Sync_Option\n"
        "Customer,Project,Activity,Employee,5,Y,N,N,Y,Y,Y,N,Ledger,0\n");
    Write(code + u"/Employee.csv"_s,
        "Employee_Number,Employee_Name,Mgmt_Approver,Sec_Approver,Approval,Rate_Permission,Rate\n"
        "007,Ada Brennwald,N,N,Y,4,84.5\n");
    Write(code + u"/Multiplier.csv"_s, "Multiplier_Number,Description,Factor\n02,Overtime,1.5\n");
    Write(code + u"/Divisions.csv"_s, "Division_Number,Division_Name,Rate\n01,North,88.25\n");
    Write(code + u"/Customers.csv"_s,
        "Customer_Number,Customer_Name,Division_Number,No_Charge,Rate\n"
        "0100,Acme,01,N,95\n0200,Brünnhof,,Y,0\n");
    Write(code + u"/Projects.csv"_s,
        "Customer_Number,Project_Number,Project_Name,Rate\n0100,1000,Ledger,0\n");
    Write(code + u"/Activities.csv"_s,
        "Activity_Number,Description,Expense,No_Charge,Rate,Unit_Cost,Dflt_Billing_Status\n"
        "CONSULT,Consulting,N,N,120,0,1\nMEALS,Meals,Y,N,0,0.425,\n");
}

void Installation::DropCompany(const QString &code)
{
    m_companies.removeAll(code);
    WriteCompanyList();
}

void Installation::WriteCompanyList() const
{
    QByteArray list = "Company_Code,Company_Name\n";
    for (const QString &code : m_companies)
        list += (code + u",Company "_s + code + u'\n').toUtf8();
    Write(u"Company.csv"_s, list);
}

void Installation::Write(const QString &file, const QByteArray &contents) const
{
    const QString path = JoinPath(Worklog, file);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile out(path);
    EXPECT_TRUE(out.open(QIODevice::WriteOnly)) << qPrintable(path);
    EXPECT_EQ(out.write(contents), contents.size());
}

QByteArray Installation::Read(const QString &file) const
{
    return Contents(JoinPath(Worklog, file));
}

void Installation::Replace(const QString &file, const QByteArray &old, const QByteArray &now) const
{
    QByteArray contents = Read(file);
    EXPECT_TRUE(contents.contains(old)) << old.constData();
    Write(file, contents.replace(old, now));
}

std::unique_ptr<QProcess> Installation::Start() const
{
    auto process = std::make_unique<QProcess>();
    process->setWorkingDirectory(JoinPath(Root, u"Home"_s));
    process->start(Client(),
        {u"-hd"_s, JoinPath(Root, u"launcher/sota.ini"_s), u"-ARG"_s, u"RUN_DIRECT"_s, u"UION"_s,
            u"*"_s, u"WLWXBA"_s, QString(Program).replace(u' ', u'*')});
    EXPECT_TRUE(process->waitForStarted(DeadlineMilliseconds));
    return process;
}

namespace {

Outcome OutcomeOf(QProcess &process)
{
    const bool ended = process.waitForFinished(DeadlineMilliseconds);
    Outcome outcome;
    if (ended && process.exitStatus() == QProcess::NormalExit)
        outcome.ExitStatus = process.exitCode();
    outcome.Output = QString::fromUtf8(process.readAllStandardOutput());
    outcome.Errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

} // namespace

Outcome Installation::Synchronise() const
{
    return OutcomeOf(*Start());
}

Outcome Installation::Call(
    const QStringList &arguments, const QProcessEnvironment &environment) const
{
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(Client(), arguments);
    return OutcomeOf(process);
}

std::unique_ptr<Tables> Installation::Open() const
{
    auto tables = std::make_unique<Tables>(Program);
    tables->Main.StoreTheCodes({u"WkLg"_s, u"KVLM"_s, u"DATA"_s});
    return tables;
}

void Installation::PutEntries(const QString &company, const std::vector<EntryRecord> &entries) const
{
    const auto tables = Open();
    const QString name = tables->Main.CompanyName(company, DatabasePrefix::Entries);
    if (!QFile::exists(RecordStore::FileName(JoinPath(Program, name))))
        tables->Main.CreateEntries(name);
    tables->Entries.Handle = tables->Main.OpenTable(name);
    RecordStore::Batch batch(tables->Store, tables->Entries.Handle);
    for (const EntryRecord &entry : entries)
        tables->Entries.AddEntry(entry);
    batch.Commit();
}

std::vector<EntryRecord> Installation::Entries(const QString &company) const
{
    const auto tables = Open();
    modDBEntr &table = tables->Entries;
    table.Handle
        = tables->Main.OpenTable(tables->Main.CompanyName(company, DatabasePrefix::Entries));
    std::vector<EntryRecord> entries;
    EntryRecord entry;
    for (table.MoveFirst(); table.ReadEntry(entry); table.MoveNext())
        entries.push_back(entry);
    return entries;
}

void Installation::PutNote(const QString &company, const QString &note) const
{
    const auto tables = Open();
    const RecordStore::Handle handle
        = tables->Main.OpenTable(tables->Main.CompanyName(company, DatabasePrefix::Entries));
    tables->Store.WriteNote(handle, note);
}

QString Installation::Note(const QString &company) const
{
    const auto tables = Open();
    const RecordStore::Handle handle
        = tables->Main.OpenTable(tables->Main.CompanyName(company, DatabasePrefix::Entries));
    return tables->Store.ReadNote(handle);
}

void Installation::Choose(const QString &company, const QString &syncOption) const
{
    const auto tables = Open();
    tables->Options.Handle
        = tables->Main.OpenTable(tables->Main.CompanyName(company, DatabasePrefix::Options));
    OptionsRecord record;
    EXPECT_TRUE(tables->Options.ReadOptions(record));
    record.Sync_Option = syncOption;
    tables->Options.UpdateOptions(record);
}

OptionsRecord Installation::Options(const QString &company) const
{
    const auto tables = Open();
    tables->Options.Handle
        = tables->Main.OpenTable(tables->Main.CompanyName(company, DatabasePrefix::Options));
    OptionsRecord record;
    EXPECT_TRUE(tables->Options.ReadOptions(record));
    return record;
}

QStringList Installation::CustomerNames(const QString &company) const
{
    const auto tables = Open();
    modDBCust &table = tables->Customers;
    table.Handle
        = tables->Main.OpenTable(tables->Main.CompanyName(company, DatabasePrefix::Customers));
    QStringList names;
    CustomerRecord record;
    for (table.MoveFirst(); table.ReadCustomer(record); table.MoveNext())
        names.append(record.Customer_Name);
    return names;
}

QStringList Installation::Companies() const
{
    const auto tables = Open();
    modDBComp &table = tables->Company;
    table.Handle = tables->Main.OpenTable(tables->Main.GlobalName(DatabasePrefix::Company));
    QStringList codes;
    CompanyRecord record;
    for (table.MoveFirst(); table.ReadCompany(record); table.MoveNext())
        codes.append(record.Company_Code);
    return codes;
}

QMap<QString, QByteArray> Installation::LocalFiles() const
{
    QMap<QString, QByteArray> files;
    QDirIterator at(
        Program, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (at.hasNext()) {
        const QString path = at.next();
        files.insert(path, Contents(path));
    }
    return files;
}

QStringList Installation::Uploads(const QString &company) const
{
    return QDir(JoinPath(Worklog, company + u"/uploads"_s))
        .entryList({u"*.csv"_s}, QDir::Files, QDir::Name);
}

QStringList Installation::HiddenUploads(const QString &company) const
{
    return QDir(JoinPath(Worklog, company + u"/uploads"_s))
        .entryList({u".*.part"_s}, QDir::Files | QDir::Hidden, QDir::Name);
}

QString Installation::UploadPath(const QString &company, const QString &name) const
{
    return JoinPath(Worklog, company + u"/uploads/"_s + name);
}

QString Installation::Log() const
{
    return QString::fromUtf8(Read(u"exchange.log"_s));
}

EntryRecord EntryNumber(int number)
{
    EntryRecord entry;
    entry.Customer_Number = u"0100"_s;
    entry.Project_Number = u"1000"_s;
    entry.Activity_Number = u"CONSULT"_s;
    entry.Date = WallClock(QDate(2024, 1, 1).addDays(number % 365));
    entry.Billing_Status = u"1"_s;
    entry.Mgmt_Approval = u"N"_s;
    entry.Sec_Approval = u"N"_s;
    entry.On_Hold = u"N"_s;
    entry.Billing_Option = u"4"_s;
    entry.Rate_Overridden = u"N"_s;
    entry.Reimburse = u"N"_s;
    entry.Hours = Currency::FromScaled(7'5000 + number);
    entry.Rate = Currency::FromWhole(95);
    entry.Amount = entry.Hours * entry.Rate;
    entry.Multiplier_Factor = Currency::FromWhole(1);
    entry.Description = u"Entry "_s + QString::number(number);
    return entry;
}

QByteArray UploadOf(const std::vector<int> &numbers)
{
    QByteArray upload = UploadHeader;
    for (const int number : numbers)
        upload += UploadLine(number);
    return upload;
}

QStringList UploadedLines(const QString &path)
{
    const QByteArray upload = Contents(path);
    EXPECT_TRUE(upload.startsWith(UploadHeader)) << path.toStdString();
    EXPECT_TRUE(upload.endsWith("\r\n")) << path.toStdString();
    QStringList lines = QString::fromUtf8(upload).split(u"\r\n"_s);
    lines.removeFirst();
    lines.removeLast();
    lines.sort();
    return lines;
}

QStringList LinesOf(const std::vector<int> &numbers)
{
    QStringList lines;
    for (const int number : numbers)
        lines.append(QString::fromUtf8(UploadLine(number).chopped(2)));
    lines.sort();
    return lines;
}

bool IsSettled(const QString &note)
{
    return QRegularExpression(u"^\\d{8}-\\d{6}-\\w+-[0-9a-f]{8}$"_s).match(note).hasMatch();
}

QString TextOf(const EntryRecord &entry)
{
    QStringList texts;
    std::apply(
        [&](const auto &...field) { (texts.append(FieldText(field)), ...); }, entry.Fields());
    return texts.join(u'|');
}

QStringList TextsOf(const std::vector<EntryRecord> &entries)
{
    QStringList texts;
    for (const EntryRecord &entry : entries)
        texts.append(TextOf(entry));
    return texts;
}
