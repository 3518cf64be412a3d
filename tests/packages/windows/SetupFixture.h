#pragma once

#include "tests/packages/windows/Desktop.h"

#include <QByteArray>
#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <QVariantMap>

#include <functional>

#include <gtest/gtest.h>

/// A user for whom Worklog Remote is not installed, and a place of theirs with blanks in its name.
/// What a test leaves installed goes at its end.
class SetupFixture : public testing::Test
{
protected:
    using Files = QMap<QString, QByteArray>; // by their names below a folder

    SetupFixture();
    void SetUp() override; ///< fails where the user has an installation, which a test would break
    void TearDown() override;

    QString Place(const QString &name) const { return m_place.filePath(name); }
    QString Folder() const
    {
        return Place(QStringLiteral("Worklog Remote"));
    } ///< into which is installed
    static QString SetupProgram();

    /// Runs the setup program silently, with more on its command line; its exit code.
    static int RunSilently(const QString &more = {});
    static int Install(const QString &folder); ///< likewise
    void InstallHere() const; ///< into Folder(), which must succeed

    /// As Windows does it from the list of apps, silently.
    void UninstallHere() const;

    /// The uninstaller works as a copy of itself, after the process that was started has ended.
    void WaitForTheUninstaller() const;

    /// The setup program with its windows.
    static void StartSetup(QProcess &setup, const QString &folder);
    void StartUninstaller() const;

    /// The installed program, until its window stands.
    void StartProgram(QProcess &program) const;

    static Files Contents(const QString &folder);
    static Files Shipped(); ///< what the setup program was made of
    void WriteData() const; ///< databases, copies of them, mas90.ini and settings
    static Files Data(); ///< which WriteData writes into the folder
    static void Write(const QString &fileName, const QByteArray &bytes);

    static QString MenuFolder();
    static QVariantMap AppsEntry(); ///< the installation's entry in the list of apps
    static QVariantMap Settings();
    static bool HasSettings();

private:
    static void RunQuietUninstall();

    QTemporaryDir m_place;
    QVariantMap m_settings; // the user's own
    bool m_mayInstall = false;
};

/// In the path of the copy that the uninstaller works as.
inline const QString UninstallerAtWork = QStringLiteral("/~nsu");

/// Waits for a condition, and says whether it came.
bool Comes(const std::function<bool()> &condition);
