#include "tests/packages/windows/SetupFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <qtestsupport_core.h>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

constexpr int Deadline = 60000;

const QString AppsKey
    = QStringLiteral("HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall");
const QString SettingsKey = QStringLiteral("HKEY_CURRENT_USER\\Software");
const QString Name = QStringLiteral("WorklogRemote");

bool HasKey(const QString &parent)
{
    return QSettings(parent, QSettings::NativeFormat).childGroups().contains(Name);
}

QVariantMap Values(const QString &parent)
{
    QVariantMap values;
    if (!HasKey(parent)) // to look at its values would make the key
        return values;
    const QSettings key(parent + u'\\' + Name, QSettings::NativeFormat);
    for (const QString &name : key.allKeys())
        values[name] = key.value(name);
    return values;
}

void RemoveKey(const QString &parent)
{
    QSettings(parent, QSettings::NativeFormat).remove(Name);
}

/// Beside this program, wherever the build folder lies.
QString Built(const char *path)
{
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u'/' + QString::fromUtf8(path));
}

/// The setup program takes the folder as the rest of its command line, without quotes.
QString IntoFolder(const QString &folder)
{
    return u"/D="_s + QDir::toNativeSeparators(folder);
}

} // namespace

SetupFixture::SetupFixture()
    : m_place(QDir::tempPath() + u"/a user's place XXXXXX"_s)
{
}

void SetupFixture::SetUp()
{
    ASSERT_FALSE(HasKey(AppsKey)) << "Worklog Remote is installed for this user.";
    ASSERT_FALSE(QFile::exists(MenuFolder()));
    ASSERT_TRUE(m_place.isValid());
    m_settings = Values(SettingsKey);
    m_mayInstall = true;
}

void SetupFixture::TearDown()
{
    if (!m_mayInstall)
        return;
    EndProcessesWithWindow(u"Worklog Remote Setup"_s);
    EndProcessesWithWindow(u"Worklog Remote Uninstall"_s);
    EndProcessesOf(Folder() + u"/WorklogRemote.exe"_s);
    // A faulty setup program may have gone elsewhere.
    const QVariantMap entry = AppsEntry();
    if (!entry.isEmpty()
        && !entry[u"InstallLocation"_s].toString().startsWith(
            QDir::toNativeSeparators(m_place.path())))
        RunQuietUninstall();
    QDir(MenuFolder()).removeRecursively();
    RemoveKey(AppsKey);
    RemoveKey(SettingsKey);
    QSettings settings(SettingsKey + u'\\' + Name, QSettings::NativeFormat);
    for (auto value = m_settings.cbegin(); value != m_settings.cend(); ++value)
        settings.setValue(value.key(), value.value());
}

QString SetupFixture::SetupProgram()
{
    return Built(WORKLOG_SETUP);
}

int SetupFixture::RunSilently(const QString &more)
{
    QProcess setup;
    setup.setProgram(SetupProgram());
    setup.setNativeArguments(u"/S "_s + more);
    setup.start();
    EXPECT_TRUE(setup.waitForFinished(Deadline)) << setup.errorString().toStdString();
    return setup.exitCode();
}

int SetupFixture::Install(const QString &folder)
{
    return RunSilently(IntoFolder(folder));
}

void SetupFixture::InstallHere() const
{
    if (const int status = Install(Folder()))
        throw std::runtime_error("The setup program ended with " + std::to_string(status));
}

void SetupFixture::RunQuietUninstall()
{
    const QString command = AppsEntry().value(u"QuietUninstallString"_s).toString();
    QStringList arguments = QProcess::splitCommand(command);
    ASSERT_FALSE(arguments.isEmpty());
    QProcess::execute(arguments.takeFirst(), arguments);
}

void SetupFixture::UninstallHere() const
{
    RunQuietUninstall();
    WaitForTheUninstaller();
}

void SetupFixture::WaitForTheUninstaller() const
{
    EXPECT_TRUE(Comes([&] { return !QFile::exists(Folder() + u"/uninstall.exe"_s); }));
    // It tries to remove the folder still, which nobody can look into meanwhile.
    EXPECT_TRUE(Comes([] { return !IsRunning(UninstallerAtWork); }));
}

void SetupFixture::StartSetup(QProcess &setup, const QString &folder)
{
    setup.setProgram(SetupProgram());
    setup.setNativeArguments(IntoFolder(folder));
    setup.start();
}

void SetupFixture::StartUninstaller() const
{
    QProcess::execute(Folder() + u"/uninstall.exe"_s, {});
}

void SetupFixture::StartProgram(QProcess &program) const
{
    program.start(Folder() + u"/WorklogRemote.exe"_s, {});
    if (!program.waitForStarted(Deadline)
        || !Comes([&] { return ShowsAWindow(program.processId()); }))
        throw std::runtime_error("The installed program shows no window.");
}

SetupFixture::Files SetupFixture::Contents(const QString &folder)
{
    Files contents;
    QDirIterator files(
        folder, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (!file.open(QIODevice::ReadOnly))
            throw std::runtime_error("cannot read " + file.fileName().toStdString());
        contents[QDir(folder).relativeFilePath(file.fileName())] = file.readAll();
    }
    return contents;
}

SetupFixture::Files SetupFixture::Shipped()
{
    return Contents(Built(WORKLOG_STAGED));
}

SetupFixture::Files SetupFixture::Data()
{
    return {{u"ABCEntries-WkLg.db"_s, "entries"}, {u"ABCEntries-WkLg.db-journal"_s, "a journal"},
        {u"Company-WkLg.db"_s, "companies"}, {u"mas90.ini"_s, "where accounting is"},
        {u"backup/20260309-103000/ABCEntries-WkLg.db"_s, "former entries"}};
}

void SetupFixture::WriteData() const
{
    const Files data = Data();
    for (auto file = data.begin(); file != data.end(); ++file)
        Write(Folder() + u'/' + file.key(), file.value());
    QSettings(SettingsKey + u'\\' + Name, QSettings::NativeFormat)
        .setValue(u"Server"_s, u"server;port"_s);
}

void SetupFixture::Write(const QString &fileName, const QByteArray &bytes)
{
    QDir().mkpath(QFileInfo(fileName).path());
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        throw std::runtime_error("cannot write " + fileName.toStdString());
}

QString SetupFixture::MenuFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::ApplicationsLocation)
        + u"/Worklog Remote"_s;
}

QVariantMap SetupFixture::AppsEntry()
{
    return Values(AppsKey);
}

QVariantMap SetupFixture::Settings()
{
    return Values(SettingsKey);
}

bool SetupFixture::HasSettings()
{
    return HasKey(SettingsKey);
}

bool Comes(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(condition, Deadline);
}
