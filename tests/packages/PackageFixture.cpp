#include "tests/packages/PackageFixture.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>

#include <stdexcept>

using namespace Qt::StringLiterals;

QString PackageFixture::Package(const QString &ending)
{
    const QDir folder(QStringLiteral(WORKLOG_PACKAGES));
    const QStringList found = folder.entryList({u'*' + ending}, QDir::Files);
    if (found.size() != 1)
        throw std::runtime_error("there is not one package *" + ending.toStdString());
    return folder.filePath(found[0]);
}

QByteArray PackageFixture::Run(const QString &program, const QStringList &arguments, int status,
    const QMap<QString, QString> &environment)
{
    QProcess process;
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    for (auto variable = environment.begin(); variable != environment.end(); ++variable)
        all.insert(variable.key(), variable.value());
    process.setProcessEnvironment(all);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
    EXPECT_EQ(process.exitCode(), status)
        << program.toStdString() << ": " << process.readAllStandardError().toStdString();
    return process.readAllStandardOutput();
}

QByteArray PackageFixture::LaunchFile(const QString &root)
{
    const QString arguments
        = u"\"%1/launcher/sota.ini\" \"%1/kv/kv_startup.m4p\" -ARG RUN_DIRECT UION * WLWXBA"_s;
    return (root + u'\n' + arguments.arg(root) + u'\n').toUtf8();
}

QString PackageFixture::MakeInstallation(const QString &client) const
{
    const QString root = Place(u"mas90"_s);
    Run(client, {u"--sample"_s, root});
    return root;
}

void PackageFixture::Write(const QString &fileName, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(fileName).path());
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + fileName.toStdString());
}

QByteArray PackageFixture::Read(const QString &fileName)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot read " + fileName.toStdString());
    return file.readAll();
}

QMap<QString, QByteArray> PackageFixture::Contents(const QString &folder)
{
    QMap<QString, QByteArray> contents;
    QDirIterator files(
        folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString name = files.next();
        contents[name] = Read(name);
    }
    return contents;
}

QStringList PackageFixture::FilesThatSay(const QString &folder, const QByteArray &bytes)
{
    const QMap<QString, QByteArray> contents = Contents(folder);
    QStringList found;
    for (auto file = contents.begin(); file != contents.end(); ++file) {
        if (file.value().contains(bytes))
            found.append(file.key());
    }
    return found;
}

void PackageFixture::SynchroniseFirst(ProgramUnderTest &program)
{
    program.WaitForMessage(u"Please perform a synchronization first."_s);
    program.Answer(u"OK"_s);
    program.Click(u"cmdSync"_s);
    ProgramUnderTest::WaitUntil(u"the company's data"_s,
        [&] { return program.Text(u"lblCompanyName"_s) == u"Abernook Business Consulting"_s; });
    program.WaitForFocus(u"dtpDate"_s); // of the window that has opened anew
}
