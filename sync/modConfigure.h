#pragma once

#include "platform/clsClock.h"
#include "platform/clsFolderBrowser.h"
#include "platform/clsMessageBox.h"
#include "platform/clsSettings.h"
#include "session/SessionState.h"
#include "store/Tables.h"
#include "sync/ActiveServer.h"
#include "sync/modSync.h"

#include <QString>

#include <array>

/// What the controls of the settings dialog show; a new one is the dialog before loading.
struct ConfigureScreen
{
    Installation Kind = Installation::MAS90; ///< the selected option button
    QString PathLabel = QStringLiteral("MAS 90 Path");
    QString Mas90Path;
    QString Host;
    QString Port = QStringLiteral("10000");
    bool ServerEnabled = false; ///< host and port, their labels and boxes
};

/// Rules of the synchronisation settings: which accounting installation this program folder works
/// with.
///
/// Files:  mas90.ini in the program folder; Launcher/sota.ini of a client installation. Host and
///         port are kept in the user's settings too, section "MAS200".
/// Errors: clsRunTimeError when a file cannot be read or written. Nothing has then changed but what
///         Screen says.
class modConfigure
{
public:
    /// All outlive it.
    modConfigure(const Tables &tables, const SessionState &session, clsSettings &settings,
        clsFolderBrowser &browser, clsMessageBox &messages, const clsClock &clock);

    /// Starts again from the launch file; an installation that is no longer there is reported,
    /// and a folder asked for. A missing or empty launch file is an error.
    void Load();
    void SelectKind(Installation kind); ///< the click on an option button
    void TypePath(const QString &typed) { Screen.Mas90Path = typed; }
    void TypeHost(const QString &typed);
    void TypePort(const QString &typed);
    void Browse();
    /// Writes the launch file; false, and the user has been told, without an installation under
    /// the path.
    bool Accept();

    std::array<QString, 4> Panels() const;

    ConfigureScreen Screen; ///< what the form draws

private:
    void BrowseFrom(const QString &start);
    void TakeInstallation(const QString &folder, Installation kind);
    void TakeActiveServer(const QString &folder);
    QString LaunchFilePath() const;

    const Tables &m_tables;
    const SessionState &m_session;
    clsSettings &m_settings;
    clsFolderBrowser &m_browser;
    clsMessageBox &m_messages;
    const clsClock &m_clock;

    // As last typed, or read from the settings or the client: the boxes are filled with it whenever
    // MAS 200 is selected, so it outlives a change to MAS 90, which may empty them.
    ActiveServer m_server;
};
