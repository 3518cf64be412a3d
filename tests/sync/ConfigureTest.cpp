// The synchronisation settings: rules and dialog, on real files.

#include "platform/clsRunTimeError.h"
#include "platform/clsWorkingFolder.h"
#include "sync/ActiveServer.h"
#include "sync/frmConfigure.h"
#include "sync/TextLines.h"
#include "tests/support/Modal.h"
#include "tests/support/Native.h"
#include "tests/support/Raised.h"
#include "tests/support/Recorded.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString Prompt = u"Please select the MAS 90 or MAS 200 client installation to synchronize "
                       u"with. Worklog Remote will append MAS90."_s;
const QString Locate = u"Please locate the MAS 90 or MAS 200 installation you plan to use."_s;
const QString NotFoundThere = u"A Mas 90 or MAS 200 was not found in the selected path."_s;

class Configure : public testing::Test
{
protected:
    Configure() { QDir().mkpath(Folder()); }

    QString Folder() const { return Place(u"program"_s); }
    QString LaunchFile() const { return Native(Folder() + u"/mas90.ini"_s); }
    QString Place(const QString &name) const { return Native(m_place.filePath(name)); }

    static void Write(const QString &path, const QByteArray &content = {})
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static QByteArray Read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly | QIODevice::Text) ? file.readAll() : "(no such file)";
    }
    /// An installation that holds soa/startup.m4p.
    QString MAS90(const QString &name = u"acc/mas90"_s)
    {
        Write(Place(name) + u"/soa/startup.m4p"_s);
        return Place(name);
    }
    /// A client installation with this sota.ini.
    QString MAS200(const QByteArray &sota = "[Active Server]\r\nwinter;12345;\r\n",
        const QString &name = u"client/mas90"_s)
    {
        Write(Place(name) + u"/home/wkStatus.flp"_s);
        Write(Place(name) + u"/Launcher/sota.ini"_s, sota);
        return Place(name);
    }
    void Launch(const QString &root) { Write(LaunchFile(), (root + u"\r\n-ARG X\r\n"_s).toUtf8()); }

    template <class Widget>
    Widget &The(const char *name)
    {
        return Control<Widget>(m_form, name);
    }
    QString Box(const char *name) { return The<QLineEdit>(name).text(); }
    bool IsMAS90() { return The<QRadioButton>("optMas90_0").isChecked(); }
    bool IsMAS200() { return The<QRadioButton>("optMas90_1").isChecked(); }
    void ExpectServer(bool enabled)
    {
        for (const char *name : {"tbxHost", "tbxPort", "lblMAS200Host", "lblMAS200Port"})
            EXPECT_EQ(The<QWidget>(name).isEnabled(), enabled) << name;
        for (const char *name : {"tbxHost", "tbxPort"}) {
            const QPalette drawn = The<QWidget>(name).palette();
            const QPalette plain = QApplication::palette("QLineEdit");
            EXPECT_EQ(drawn.color(QPalette::Base),
                plain.color(enabled ? QPalette::Base : QPalette::Button))
                << name;
        }
    }
    void ExpectMessage(const QString &text, MessageIcon icon)
    {
        ASSERT_THAT(m_messages.Texts(), ElementsAre(text));
        EXPECT_EQ(m_messages.Shown[0].Icon, icon);
        EXPECT_EQ(m_messages.Shown[0].Buttons, MessageButtons::OK);
    }
    void Show()
    {
        m_form.Load();
        ASSERT_TRUE(ShowActive(m_form));
    }
    void Click(const char *name) { QTest::mouseClick(&The<QAbstractButton>(name), Qt::LeftButton); }
    void Fill(const char *name, const QString &text)
    {
        auto &box = The<QLineEdit>(name);
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&box, Qt::Key_Delete);
        QTest::keyClicks(&box, text);
    }

    QTemporaryDir m_place;
    Tables m_tables{Folder()};
    SessionState m_session;
    clsRecordedSettings m_settings;
    clsRecordedBrowser m_browser;
    clsRecordedMessages m_messages;
    clsRecordedKeys m_keys;
    clsFixedClock m_clock;
    modConfigure m_module{m_tables, m_session, m_settings, m_browser, m_messages, m_clock};
    frmConfigure m_form{m_module, m_messages, m_keys};
};

} // namespace

TEST_F(Configure, AMAS90InstallationLoadsWithEmptyGreyServerBoxes)
{
    const QString root = MAS90();
    Launch(root);
    m_settings.Values = {{u"MAS200/Host"_s, u"winter"_s}, {u"MAS200/Port"_s, u"12345"_s}};
    m_form.Load();
    EXPECT_TRUE(IsMAS90());
    EXPECT_EQ(Box("txtMas90Path"), root);
    EXPECT_EQ(The<QLabel>("lblMas90Path").text(), u"MAS 90 Path"_s);
    EXPECT_EQ(Box("tbxHost"), QString());
    EXPECT_EQ(Box("tbxPort"), QString());
    ExpectServer(false);
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_THAT(m_browser.Prompts, IsEmpty());
}

TEST_F(Configure, AClientLoadsItsServerFromTheSettings)
{
    const QString root = MAS200();
    Launch(root);
    m_settings.Values = {{u"MAS200/Host"_s, u"summer"_s}, {u"MAS200/Port"_s, u"777"_s}};
    m_form.Load();
    EXPECT_TRUE(IsMAS200());
    EXPECT_EQ(Box("txtMas90Path"), root);
    EXPECT_EQ(The<QLabel>("lblMas90Path").text(), u"MAS 200 Path"_s);
    EXPECT_EQ(Box("tbxHost"), u"summer"_s);
    EXPECT_EQ(Box("tbxPort"), u"777"_s);
    ExpectServer(true);
}

TEST_F(Configure, APortThatWasNeverSavedShows10000)
{
    Launch(MAS200());
    m_form.Load();
    EXPECT_EQ(Box("tbxHost"), QString());
    EXPECT_EQ(Box("tbxPort"), u"10000"_s);
}

TEST_F(Configure, AnInstallationThatIsGoneIsToldAndAskedFor)
{
    Launch(Place(u"gone/mas90"_s));
    const QString root = MAS90();
    m_browser.Folder = Place(u"acc"_s);
    m_form.Load();
    ExpectMessage(Locate, MessageIcon::Critical);
    EXPECT_THAT(m_browser.Prompts, ElementsAre(Prompt));
    EXPECT_THAT(m_browser.Starts, ElementsAre(Place(u"gone/"_s)));
    EXPECT_EQ(Box("txtMas90Path"), root);
    EXPECT_TRUE(IsMAS90());
}

TEST_F(Configure, ACancelledBrowserAfterLoadingLeavesTheDialogAsItWas)
{
    Launch(Place(u"gone/mas90"_s));
    m_form.Load();
    ExpectMessage(Locate, MessageIcon::Critical);
    EXPECT_EQ(Box("txtMas90Path"), QString());
    EXPECT_EQ(Box("tbxPort"), u"10000"_s);
    EXPECT_TRUE(IsMAS90());
    ExpectServer(false);
}

TEST_F(Configure, AMissingLaunchFileIsTheErrorAndTheDialogStandsOpen)
{
    m_form.Load();
    ExpectMessage(u"Error #53 (File not found: %1)."_s.arg(LaunchFile()), MessageIcon::Exclamation);
    EXPECT_THAT(m_browser.Prompts, IsEmpty());
    const QString root = MAS90();
    m_browser.Folder = Place(u"acc"_s);
    PlayModal(m_form, [&] {
        Click("cmdBrowse");
        EXPECT_EQ(Box("txtMas90Path"), root);
        Click("cmdAccept");
    });
    EXPECT_TRUE(Read(LaunchFile()).startsWith(root.toUtf8() + '\n'));
}

TEST_F(Configure, AnEmptyLaunchFileIsTheErrorAndTheDialogStandsOpen)
{
    for (const QByteArray &content : {QByteArray(), QByteArray("\xEF\xBB\xBF")}) {
        Write(LaunchFile(), content);
        m_messages.Shown.clear();
        Show();
        ExpectMessage(u"Error #62 (The file does not hold its two lines: %1)."_s.arg(LaunchFile()),
            MessageIcon::Exclamation);
        EXPECT_TRUE(m_form.isVisible());
        EXPECT_THAT(m_browser.Prompts, IsEmpty());
        m_form.close();
    }
}

TEST_F(Configure, TheFirstLineAloneIsEnoughToLoad)
{
    const QString root = MAS90(u"Büro/mas90"_s);
    for (const QByteArray &content :
        {root.toUtf8(), QByteArray("\xEF\xBB\xBF" + root.toUtf8() + "\r\n"),
            QByteArray(root.toUtf8() + "\n\n-ARG X"), root.toLatin1()}) {
        Write(LaunchFile(), content);
        m_form.Load();
        EXPECT_EQ(Box("txtMas90Path"), root) << content.toStdString();
        EXPECT_THAT(m_messages.Texts(), IsEmpty());
    }
}

TEST_F(Configure, AFirstLineWithSpacesAroundItIsNoInstallation)
{
    const QString root = MAS90();
    for (const QString &line : {u' ' + root, QString()}) {
        Launch(line);
        m_messages.Shown.clear();
        m_form.Load();
        ExpectMessage(Locate, MessageIcon::Critical);
        EXPECT_EQ(Box("txtMas90Path"), QString());
    }
}

TEST_F(Configure, TenMegabytesOfNonsenseAreNoInstallation)
{
    QByteArray nonsense(10 * 1024 * 1024, '\0');
    quint32 state = 1;
    for (char &byte : nonsense) {
        state = state * 1664525 + 1013904223;
        byte = static_cast<char>(state >> 24);
    }
    for (const QByteArray &content : {nonsense, QByteArray(10 * 1024 * 1024, 'x')}) {
        Write(LaunchFile(), content);
        m_messages.Shown.clear();
        m_form.Load();
        ExpectMessage(Locate, MessageIcon::Critical);
        EXPECT_EQ(Box("txtMas90Path"), QString());
    }
}

TEST_F(Configure, ChoosingTheKindRenamesThePathAndFillsTheServer)
{
    Launch(MAS200());
    m_settings.Values = {{u"MAS200/Host"_s, u"summer"_s}, {u"MAS200/Port"_s, u"777"_s}};
    Show();
    Click("optMas90_0");
    EXPECT_EQ(The<QLabel>("lblMas90Path").text(), u"MAS 90 Path"_s);
    ExpectServer(false);
    EXPECT_EQ(Box("tbxHost"), u"summer"_s); // disabled, not emptied
    Click("optMas90_1");
    EXPECT_EQ(The<QLabel>("lblMas90Path").text(), u"MAS 200 Path"_s);
    ExpectServer(true);
    EXPECT_EQ(Box("tbxHost"), u"summer"_s);
    EXPECT_EQ(Box("tbxPort"), u"777"_s);
}

TEST_F(Configure, ATypedServerSurvivesAChangeToMAS90AndBack)
{
    const QString client = MAS200();
    Launch(client);
    m_settings.Values = {{u"MAS200/Host"_s, u"summer"_s}, {u"MAS200/Port"_s, u"777"_s}};
    m_form.Load();
    PlayModal(m_form, [&] {
        Fill("tbxHost", u"typed"_s);
        Fill("tbxPort", u"4000"_s);
        Click("optMas90_0");
        EXPECT_EQ(Box("tbxHost"), u"typed"_s);
        Click("optMas90_1");
        EXPECT_EQ(Box("tbxHost"), u"typed"_s);
        EXPECT_EQ(Box("tbxPort"), u"4000"_s);
        Fill("tbxPort", QString()); // an emptied box stays empty, too
        Click("optMas90_0");
        Click("optMas90_1");
        EXPECT_EQ(Box("tbxHost"), u"typed"_s);
        EXPECT_EQ(Box("tbxPort"), QString());
        Click("cmdAccept");
    });
    EXPECT_TRUE(Read(LaunchFile()).contains(" KV_Client -ARG \"typed\" \"\" "));
    EXPECT_EQ(m_settings.Values,
        (QMap<QString, QString>{{u"MAS200/Host"_s, u"typed"_s}, {u"MAS200/Port"_s, QString()}}));
}

TEST_F(Configure, ATypedServerSurvivesBrowsingToMAS90AndChoosingMAS200)
{
    Launch(MAS200());
    MAS90();
    Show();
    Fill("tbxHost", u"typed"_s);
    m_browser.Folder = Place(u"acc"_s);
    Click("cmdBrowse");
    EXPECT_EQ(Box("tbxHost"), QString());
    EXPECT_EQ(Box("tbxPort"), QString());
    Click("optMas90_1");
    EXPECT_EQ(Box("tbxHost"), u"typed"_s);
    EXPECT_EQ(Box("tbxPort"), u"10000"_s);
}

TEST_F(Configure, TheKindIsChosenByArrowKeys)
{
    Launch(MAS90());
    Show();
    ASSERT_TRUE(The<QRadioButton>("optMas90_0").hasFocus());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    EXPECT_TRUE(IsMAS200());
    ExpectServer(true);
    EXPECT_EQ(Box("tbxPort"), u"10000"_s);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    EXPECT_TRUE(IsMAS90());
    ExpectServer(false);
}

TEST_F(Configure, BrowsingToAClientTakesItsActiveServer)
{
    Launch(MAS90());
    const QString client = MAS200();
    Show();
    m_browser.Folder = Place(u"client"_s);
    Click("cmdBrowse");
    EXPECT_THAT(m_browser.Starts, ElementsAre(Place(u"acc/"_s)));
    EXPECT_TRUE(IsMAS200());
    EXPECT_EQ(Box("txtMas90Path"), client);
    EXPECT_EQ(Box("tbxHost"), u"winter"_s);
    EXPECT_EQ(Box("tbxPort"), u"12345"_s);
    EXPECT_THAT(m_settings.Values, IsEmpty()); // nothing is saved before Accept
}

TEST_F(Configure, BrowsingToMAS90EmptiesTheServer)
{
    Launch(MAS200());
    m_settings.Values = {{u"MAS200/Host"_s, u"summer"_s}, {u"MAS200/Port"_s, u"777"_s}};
    const QString root = MAS90();
    Show();
    m_browser.Folder = Place(u"acc/"_s); // a separator at the end is not doubled
    Click("cmdBrowse");
    EXPECT_TRUE(IsMAS90());
    EXPECT_EQ(Box("txtMas90Path"), root);
    EXPECT_EQ(Box("tbxHost"), QString());
    EXPECT_EQ(Box("tbxPort"), QString());
    ExpectServer(false);
}

TEST_F(Configure, AFolderThatEndsInMas90StillGetsMas90Appended)
{
    Launch(MAS90());
    const QString inner = MAS90(u"acc/mas90/mas90"_s);
    Show();
    m_browser.Folder = Place(u"acc/mas90"_s);
    Click("cmdBrowse");
    EXPECT_EQ(Box("txtMas90Path"), inner);
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
}

TEST_F(Configure, TheAppendedFolderIsFoundWhateverItsLetters)
{
    const QString root = MAS90(u"acc/MAS90"_s);
    Launch(root);
    Show();
    m_browser.Folder = Place(u"acc"_s);
    Click("cmdBrowse");
    EXPECT_EQ(QFileInfo(Box("txtMas90Path")), QFileInfo(root));
}

TEST_F(Configure, TheBrowserStartsBeforeTheLastMas90OfThePath)
{
    struct Case
    {
        QString Path;
        QString Start;
    };
    Launch(MAS90());
    Show();
    for (const Case &c :
        {Case{u"/srv/Mas90"_s, u"/srv/"_s}, Case{u"/mas90/old/MAS90/x"_s, u"/mas90/old/"_s},
            Case{u" /srv/other "_s, u"/srv/other"_s}, Case{QString(), QString()},
            Case{u"  mas90"_s, QString()}}) {
        Fill("txtMas90Path", c.Path);
        m_browser.Starts.clear();
        Click("cmdBrowse");
        EXPECT_THAT(m_browser.Starts, ElementsAre(c.Start)) << c.Path.toStdString();
    }
}

TEST_F(Configure, AFolderWithoutAnInstallationEmptiesThePath)
{
    Launch(MAS200());
    Show();
    m_browser.Folder = Folder();
    Click("cmdBrowse");
    ExpectMessage(NotFoundThere, MessageIcon::Critical);
    EXPECT_EQ(Box("txtMas90Path"), QString());
    EXPECT_TRUE(IsMAS200());
    ExpectServer(true);
}

TEST_F(Configure, ACancelledBrowserChangesNothing)
{
    const QString root = MAS200();
    Launch(root);
    Show();
    Fill("tbxHost", u"typed"_s);
    Click("cmdBrowse");
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
    EXPECT_EQ(Box("txtMas90Path"), root);
    EXPECT_EQ(Box("tbxHost"), u"typed"_s);
    EXPECT_TRUE(IsMAS200());
}

TEST_F(Configure, AMalformedSectionLeavesTheServerAsItWas)
{
    Launch(MAS200("[Active Server]\r\nwinter\r\n"));
    m_settings.Values = {{u"MAS200/Host"_s, u"summer"_s}, {u"MAS200/Port"_s, u"777"_s}};
    Show();
    Fill("tbxHost", u"typed"_s);
    m_browser.Folder = Place(u"client"_s);
    Click("cmdBrowse");
    EXPECT_EQ(Box("tbxHost"), u"typed"_s);
    EXPECT_EQ(Box("tbxPort"), u"777"_s);
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
}

TEST_F(Configure, AClientWithoutSotaIniIsAnErrorAndTakesNothing)
{
    const QString root = MAS90();
    Launch(root);
    const QString client = MAS200();
    ASSERT_TRUE(QFile::remove(client + u"/Launcher/sota.ini"_s));
    Show();
    m_browser.Folder = Place(u"client"_s);
    Click("cmdBrowse");
    ExpectMessage(
        u"Error #53 (File not found: %1)."_s.arg(Native(client + u"/Launcher/sota.ini"_s)),
        MessageIcon::Exclamation);
    EXPECT_EQ(Box("txtMas90Path"), root);
    EXPECT_TRUE(IsMAS90());
}

TEST_F(Configure, AcceptWritesTheMAS90FormAndCloses)
{
    const QString root = MAS90(u"Büro/mas90"_s);
    Launch(root);
    m_form.Load();
    PlayModal(m_form, [&] { QTest::keyClick(&m_form, Qt::Key_A, Qt::AltModifier); });
    EXPECT_EQ(Read(LaunchFile()),
        Native(u"%1\n\"%1/launcher/sota.ini\" \"%1/kv/kv_startup.m4p\" "
               "-ARG RUN_DIRECT UION * WLWXBA\n"_s)
            .arg(root)
            .toUtf8());
    EXPECT_THAT(m_settings.Values, IsEmpty());
    EXPECT_THAT(QDir(Folder()).entryList(QDir::Files), ElementsAre(u"mas90.ini"_s));
}

TEST_F(Configure, AcceptWritesTheClientFormAndSavesTheServer)
{
    const QString root = MAS200();
    Launch(root);
    m_form.Load();
    PlayModal(m_form, [&] {
        Fill("tbxHost", u"100%1 winter"_s);
        Fill("tbxPort", u"4000"_s);
        Click("cmdAccept");
    });
    EXPECT_EQ(Read(LaunchFile()),
        root.toUtf8() + "\n\"" + Native(root + u"/launcher/sota.ini"_s).toUtf8()
            + "\" KV_Client -ARG \"100%1 winter\" \"4000\" \"KV_DIRECT\" "
              "-ARG=RUN_DIRECT UION * WLWXBA\n");
    EXPECT_EQ(m_settings.Values,
        (QMap<QString, QString>{
            {u"MAS200/Host"_s, u"100%1 winter"_s}, {u"MAS200/Port"_s, u"4000"_s}}));
}

TEST_F(Configure, WhatThePathHoldsDecidesAndNotTheOptionButton)
{
    const QString client = MAS200();
    const QString root = MAS90();
    Launch(client);
    m_form.Load();
    PlayModal(m_form, [&] {
        Click("optMas90_0"); // claims MAS 90
        Click("cmdAccept");
    });
    EXPECT_TRUE(Read(LaunchFile()).contains(" KV_Client "));
    EXPECT_EQ(m_settings.Values.size(), 2);

    m_settings.Values.clear();
    m_form.Load();
    PlayModal(m_form, [&] {
        Fill("txtMas90Path", root); // while MAS 200 is selected
        Click("cmdAccept");
    });
    EXPECT_TRUE(Read(LaunchFile()).contains("kv_startup.m4p"));
    EXPECT_THAT(m_settings.Values, IsEmpty());
}

TEST_F(Configure, APathWithoutAnInstallationIsToldAndTheDialogStandsOpen)
{
    Launch(MAS90());
    const QByteArray before = Read(LaunchFile());
    Show();
    Fill("txtMas90Path", u"/no/<b>such</b>/mas90"_s);
    Click("cmdAccept");
    ExpectMessage(u"MAS 90 or MAS 200 client not found in path: \r\n/no/<b>such</b>/mas90"_s,
        MessageIcon::Critical);
    EXPECT_TRUE(m_form.isVisible());
    EXPECT_EQ(Read(LaunchFile()), before);

    m_messages.Shown.clear();
    Fill("txtMas90Path", QString());
    Click("cmdAccept");
    ExpectMessage(u"MAS 90 or MAS 200 client not found in path: \r\n"_s, MessageIcon::Critical);
}

TEST_F(Configure, ARelativePathIsNotFoundWhereverTheProgramWasStarted)
{
    Launch(MAS90());
    const QByteArray before = Read(LaunchFile());
    const clsWorkingFolder above(m_place.path());
    Show();
    Fill("txtMas90Path", u"acc/mas90"_s);
    Click("cmdAccept");
    ExpectMessage(
        u"MAS 90 or MAS 200 client not found in path: \r\nacc/mas90"_s, MessageIcon::Critical);
    EXPECT_TRUE(m_form.isVisible());
    EXPECT_EQ(Read(LaunchFile()), before);
}

TEST_F(Configure, SettingsThatCannotBeSavedAreToldAndTheDialogStandsOpen)
{
    class clsFullSettings : public clsRecordedSettings
    {
    public:
        void SaveSetting(const QString &, const QString &, const QString &) override
        {
            throw clsRunTimeError(RunTimeErrors::PathAccess, u"Settings"_s, u"The disk is full"_s);
        }
    };
    Launch(MAS200());
    clsFullSettings full;
    modConfigure module(m_tables, m_session, full, m_browser, m_messages, m_clock);
    frmConfigure form(module, m_messages, m_keys);
    form.Load();
    ASSERT_TRUE(ShowActive(form));
    QTest::mouseClick(&Control<QPushButton>(form, "cmdAccept"), Qt::LeftButton);
    ExpectMessage(u"Error #75 (The disk is full)."_s, MessageIcon::Exclamation);
    EXPECT_TRUE(form.isVisible());
}

TEST_F(Configure, ALaunchFileThatCannotBeWrittenIsToldAndNothingIsSaved)
{
    Launch(MAS200());
    const QByteArray before = Read(LaunchFile());
    ASSERT_TRUE(QDir().mkpath(LaunchFile() + u".new/in the way"_s));
    Show();
    Fill("tbxHost", u"winter"_s);
    Click("cmdAccept");
    ASSERT_EQ(m_messages.Shown.size(), 1);
    EXPECT_TRUE(m_messages.Shown[0].Text.startsWith(u"Error #75 ("_s));
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_TRUE(m_form.isVisible());
    EXPECT_EQ(Read(LaunchFile()), before);
    EXPECT_THAT(m_settings.Values, IsEmpty());
}

TEST_F(Configure, CancelAndEscapeWriteNothing)
{
    Launch(MAS200());
    const QByteArray before = Read(LaunchFile());
    for (const bool byEscape : {false, true}) {
        m_form.Load();
        PlayModal(m_form, [&] {
            Fill("tbxHost", u"winter"_s);
            if (byEscape)
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            else
                QTest::keyClick(&m_form, Qt::Key_C, Qt::AltModifier);
        });
        EXPECT_EQ(Read(LaunchFile()), before);
        EXPECT_THAT(m_settings.Values, IsEmpty());
    }
    m_form.Load();
    EXPECT_EQ(Box("tbxHost"), QString()); // what was typed is forgotten
}

TEST_F(Configure, EnterInABoxMovesOnAndAcceptsNothing)
{
    Launch(MAS200());
    Show();
    for (const char *name : {"txtMas90Path", "tbxHost", "tbxPort"}) {
        m_keys.Sent.clear();
        The<QLineEdit>(name).setFocus();
        QTest::keyClick(&The<QLineEdit>(name), Qt::Key_Return);
        EXPECT_THAT(m_keys.Sent, ElementsAre(u"{TAB}"_s)) << name;
        EXPECT_TRUE(m_form.isVisible());
    }
    QTest::keyClick(&The<QLineEdit>("txtMas90Path"), Qt::Key_Enter, Qt::KeypadModifier);
    EXPECT_EQ(m_keys.Sent.size(), 2);
}

TEST_F(Configure, HelpSendsF1)
{
    Launch(MAS90());
    Show();
    Click("cmdHelp");
    EXPECT_THAT(m_keys.Sent, ElementsAre(u"{F1}"_s));
    EXPECT_TRUE(m_form.isVisible());
}

TEST_F(Configure, EveryControlIsReachedByTab)
{
    Launch(MAS200());
    Show();
    QStringList reached;
    for (int i = 0; i < 8; ++i) {
        reached.append(QApplication::focusWidget()->objectName());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_THAT(reached,
        ElementsAre(u"optMas90_1"_s, u"txtMas90Path"_s, u"cmdBrowse"_s, u"tbxHost"_s, u"tbxPort"_s,
            u"cmdAccept"_s, u"cmdCancel"_s, u"cmdHelp"_s));
    EXPECT_EQ(The<QRadioButton>("optMas90_0").text(), u"MAS 90"_s);
    EXPECT_EQ(The<QRadioButton>("optMas90_1").text(), u"MAS 200"_s);
    EXPECT_EQ(The<QLabel>("lblMas90Path").buddy(), &The<QLineEdit>("txtMas90Path"));
}

TEST(ActiveServerTest, IsReadAsPeopleHaveIt)
{
    struct Case
    {
        const char *Name;
        QByteArray Content;
        QString Server; // "host port", or "-"
    };
    const QByteArray filler(10 * 1024 * 1024, '#');
    QTemporaryDir folder;
    const QString path = folder.filePath(u"sota.ini"_s);
    for (const Case &c :
        {Case{"Plain", "[Active Server]\r\nserver;10000;\r\n", u"server 10000"_s},
            Case{"LineFeeds", "[Other]\nx;1;\n[Active Server]\nserver;10000;\n", u"server 10000"_s},
            Case{"NoLastLineEnd", "[Active Server]\nserver;10000;", u"server 10000"_s},
            Case{
                "ByteOrderMark", "\xEF\xBB\xBF[Active Server]\nserver;10000;\n", u"server 10000"_s},
            Case{"EmptyLinesBeforeTheSection", "\n\n[Active Server]\r\nserver;10000;\n",
                u"server 10000"_s},
            Case{"AnEmptyLineAfterTheSection", "[Active Server]\r\n\r\nserver;10000;\n", u"-"_s},
            Case{"SpacesAfterTheSection", "[Active Server] \nserver;10000;\n", u"server 10000"_s},
            Case{"OneSpaceAtTheEnd", "[Active Server]\r\nserver;10000; \r\n", u"server 10000;"_s},
            Case{"SpacesAround", "[Active Server]\n  server ; 10000;\t\t\n",
                u"  server   10000;\t"_s},
            Case{"TextAroundTheSection", "; [Active Server] of 1999\nserver;1;\n", u"server 1"_s},
            Case{
                "NoFinalSemicolonLosesADigit", "[Active Server]\nserver;10000\n", u"server 1000"_s},
            Case{"MoreFields", "[Active Server]\nserver;10000;on;\n", u"server 10000;on"_s},
            Case{"ALaterSectionOverrides", "[Active Server]\na;1;\n[Else]\n[Active Server]\nb;2;\n",
                u"b 2"_s},
            Case{"AMalformedLaterSectionDoesNot", "[Active Server]\na;1;\n[Active Server]\nb\n",
                u"a 1"_s},
            Case{"TheSectionTwiceInARow", "[Active Server]\n[Active Server]\nb;2;\n", u"b 2"_s},
            Case{"OtherLetters", "[active server]\nserver;10000;\n", u"-"_s},
            Case{"ALineOfAnotherSection", "[Active Server]\nserver;10000;\n[Else]\nother;2;\n",
                u"server 10000"_s},
            Case{"NothingAfterTheSection", "[Active Server]\n", u"-"_s},
            Case{"NoPort", "[Active Server]\nserver;\n", u"-"_s}, Case{"Empty", "", u"-"_s},
            Case{"Utf8", "[Active Server]\nM\xC3\xBChle;1;\n", u"Mühle 1"_s},
            Case{"Ansi", "[Active Server]\nM\xFChle\x80;1;\n", u"Mühle\u20ac 1"_s},
            Case{"Nonsense", filler, u"-"_s},
            Case{"BehindNonsense", filler + "\n[Active Server]\nserver;1;\n", u"server 1"_s}}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(c.Content);
        file.close();
        const std::optional<ActiveServer> server = ReadActiveServer(path);
        EXPECT_EQ(server ? server->Host + u' ' + server->Port : u"-"_s, c.Server) << c.Name;
    }
}

TEST(TextLinesTest, AByteOrderMarkTellsTheEncoding)
{
    QByteArray utf16("\xFF\xFE", 2);
    for (const char c : QByteArrayView("a\r\nb")) {
        utf16.append(c);
        utf16.append('\0');
    }
    EXPECT_THAT(TextLines(utf16), ElementsAre(u"a"_s, u"b"_s));
    EXPECT_THAT(TextLines("a\n\nb\n"), ElementsAre(u"a"_s, QString(), u"b"_s));
    EXPECT_THAT(TextLines("\x93quoted\x94"), ElementsAre(u"\u201cquoted\u201d"_s));
    EXPECT_THAT(TextLines({}), IsEmpty());
}
