#include "exchange/SampleRoot.h"

#include "exchange/Csv.h"
#include "exchange/ExchangeErrors.h"
#include "exchange/SampleData.h"
#include "platform/clsRunTimeError.h"
#include "platform/Paths.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {

[[noreturn]] void RaiseNotMade(const QString &path)
{
    throw clsRunTimeError(RunTimeErrors::PathAccess, u"Exchange"_s,
        path + u": this cannot be made: "_s + qt_error_string());
}

void MakeFolder(const QString &path)
{
    if (!QDir().mkpath(path))
        RaiseNotMade(path);
}

/// The folder of that name under the root, in whatever case it is written there; made if missing.
QString FolderUnder(const QString &root, const QString &name)
{
    const QString found = FindIgnoringCase(root, name);
    if (!found.isEmpty())
        return found;
    MakeFolder(JoinPath(root, name));
    return JoinPath(root, name);
}

void WriteNew(const QString &fileName, const QByteArray &contents)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)
        || file.write(contents) != contents.size() || !file.flush())
        RaiseNotMade(fileName);
}

void WriteIfMissing(const QString &folder, const QString &name, const QByteArray &contents)
{
    if (FindIgnoringCase(folder, name).isEmpty())
        WriteNew(JoinPath(folder, name), contents);
}

void CopyClient(const QString &client, const QString &home)
{
    if (!FindIgnoringCase(home, u"pvxwin32.exe"_s).isEmpty())
        return;
    const QString copy = JoinPath(home, u"pvxwin32.exe"_s);
    if (!QFile::copy(client, copy)
        || !QFile::setPermissions(
            copy, QFile::permissions(copy) | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther))
        RaiseNotMade(copy);
}

std::string LineOf(const QStringList &cells)
{
    std::vector<std::string> texts;
    for (const QString &cell : cells)
        texts.push_back(cell.toStdString());
    return CsvLine(texts);
}

void WriteTable(const QString &folder, const SampleTable &table)
{
    std::string text = LineOf(table.Header);
    for (const QStringList &record : table.Records)
        text += LineOf(record);
    WriteNew(JoinPath(folder, table.Name + u".csv"_s), QByteArray::fromStdString(text));
}

void WriteCompany(
    const QString &worklog, const QString &code, const std::vector<SampleTable> &tables)
{
    const QString folder = FolderUnder(worklog, code);
    for (const SampleTable &table : tables)
        WriteTable(folder, table);
}

} // namespace

void MakeSampleRoot(const QString &root, const QString &client)
{
    const QString existing = FindIgnoringCase(root, u"worklog"_s);
    if (!existing.isEmpty())
        RaiseExchangeError(ExchangeErrors::Refused,
            existing + u": a sample is only made where there is no worklog folder"_s);
    MakeFolder(root);
    WriteIfMissing(FolderUnder(root, u"soa"_s), u"startup.m4p"_s,
        "Marks this folder as an accounting installation.\n"_ba);
    WriteIfMissing(
        FolderUnder(root, u"launcher"_s), u"sota.ini"_s, "[Active Server]\nserver;10000;\n"_ba);
    CopyClient(client, FolderUnder(root, u"Home"_s));
    const QString worklog = FolderUnder(root, u"worklog"_s);
    WriteTable(worklog, SampleCompanies());
    WriteCompany(worklog, u"ABC"_s, SampleTablesOfABC());
    WriteCompany(worklog, u"XYZ"_s, SampleTablesOfXYZ());
}
