#include "sync/modConfigure.h"

#include "platform/Paths.h"
#include "platform/RunWhileWaiting.h"
#include "sync/DialogStatus.h"
#include "sync/LaunchFile.h"

using namespace Qt::StringLiterals;

namespace {

const QString Section = QStringLiteral("MAS200");
const QString HostKey = QStringLiteral("Host");
const QString PortKey = QStringLiteral("Port");

const QString Prompt
    = QStringLiteral("Please select the MAS 90 or MAS 200 client installation to synchronize with. "
                     "Worklog Remote will append MAS90.");

/// Where the installation's own folder lies.
QString FolderAbove(const QString &path)
{
    const qsizetype at = path.lastIndexOf("mas90"_L1, -1, Qt::CaseInsensitive);
    return (at < 0 ? path : path.left(at)).trimmed();
}

/// The installation in a chosen folder, also when that is called mas90 itself. Where the case of
/// letters makes a difference, the letters are those of the folder that is there.
QString InstallationIn(const QString &chosen)
{
    QString found;
    RunWhileWaiting([&] { found = FindIgnoringCase(chosen, u"mas90"_s); });
    return found.isEmpty() ? JoinPath(chosen, u"mas90"_s) : found;
}

} // namespace

modConfigure::modConfigure(const Tables &tables, const SessionState &session, clsSettings &settings,
    clsFolderBrowser &browser, clsMessageBox &messages, const clsClock &clock)
    : m_tables(tables)
    , m_session(session)
    , m_settings(settings)
    , m_browser(browser)
    , m_messages(messages)
    , m_clock(clock)
{
}

std::array<QString, 4> modConfigure::Panels() const
{
    return DialogStatus(m_tables, m_session, m_clock);
}

QString modConfigure::LaunchFilePath() const
{
    return JoinPath(m_tables.Main.Folder(), u"mas90.ini"_s);
}

void modConfigure::Load()
{
    Screen = ConfigureScreen();
    m_server = {Screen.Host, Screen.Port};
    const QString folder = ReadLaunchRoot(LaunchFilePath());
    const std::optional<Installation> kind = CheckInstallation(folder);
    if (!kind) {
        m_messages.Tell(u"Please locate the MAS 90 or MAS 200 installation you plan to use."_s,
            MessageIcon::Critical);
        BrowseFrom(folder);
        return;
    }
    if (*kind == Installation::MAS200Client) {
        m_server = {m_settings.GetSetting(Section, HostKey, m_server.Host),
            m_settings.GetSetting(Section, PortKey, m_server.Port)};
    }
    TakeInstallation(folder, *kind);
}

void modConfigure::SelectKind(Installation kind)
{
    Screen.Kind = kind;
    Screen.ServerEnabled = kind == Installation::MAS200Client;
    Screen.PathLabel = Screen.ServerEnabled ? u"MAS 200 Path"_s : u"MAS 90 Path"_s;
    if (!Screen.ServerEnabled)
        return;
    Screen.Host = m_server.Host;
    Screen.Port = m_server.Port;
}

void modConfigure::TypeHost(const QString &typed)
{
    Screen.Host = m_server.Host = typed;
}

void modConfigure::TypePort(const QString &typed)
{
    Screen.Port = m_server.Port = typed;
}

void modConfigure::TakeInstallation(const QString &folder, Installation kind)
{
    if (kind == Installation::MAS90) {
        Screen.Host.clear();
        Screen.Port.clear();
    }
    SelectKind(kind);
    Screen.Mas90Path = folder;
}

void modConfigure::TakeActiveServer(const QString &folder)
{
    const QString name = u"Launcher/sota.ini"_s;
    std::optional<ActiveServer> server;
    RunWhileWaiting([&] {
        const QString found = FindIgnoringCase(folder, name);
        server = ReadActiveServer(found.isEmpty() ? JoinPath(folder, name) : found);
    });
    if (server)
        m_server = *server;
}

void modConfigure::Browse()
{
    BrowseFrom(Screen.Mas90Path);
}

void modConfigure::BrowseFrom(const QString &start)
{
    const QString chosen = m_browser.Browse(Prompt, FolderAbove(start));
    if (chosen.isEmpty())
        return;
    const QString folder = InstallationIn(chosen);
    const std::optional<Installation> kind = CheckInstallation(folder);
    if (!kind) {
        m_messages.Tell(
            u"A Mas 90 or MAS 200 was not found in the selected path."_s, MessageIcon::Critical);
        Screen.Mas90Path.clear();
        return;
    }
    if (*kind == Installation::MAS200Client)
        TakeActiveServer(folder);
    TakeInstallation(folder, *kind);
}

bool modConfigure::Accept()
{
    const QString path = Screen.Mas90Path;
    const std::optional<Installation> kind = CheckInstallation(path);
    if (!kind) {
        m_messages.Tell(
            u"MAS 90 or MAS 200 client not found in path: \r\n"_s + path, MessageIcon::Critical);
        return false;
    }
    // What the path holds decides, not the option button. The launch file comes first: as long as
    // it cannot be written, nothing has changed.
    const bool isClient = *kind == Installation::MAS200Client;
    const LaunchFile launch{
        path, isClient ? MAS200Arguments(path, Screen.Host, Screen.Port) : MAS90Arguments(path)};
    RunWhileWaiting([&] {
        WriteLaunchFile(LaunchFilePath(), launch);
        if (!isClient)
            return;
        m_settings.SaveSetting(Section, HostKey, Screen.Host);
        m_settings.SaveSetting(Section, PortKey, Screen.Port);
    });
    return true;
}
