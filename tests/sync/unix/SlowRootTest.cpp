// An accounting installation on a network that takes its time to answer.

#include "sync/frmConfigure.h"
#include "tests/support/BusyMoment.h"
#include "tests/support/Recorded.h"
#include "tests/support/SlowFolder.h"
#include "tests/support/Windows.h"

#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SlowRoot : public testing::Test
{
protected:
    SlowRoot()
    {
        for (const QString &name : {u"program/a"_s, u"network/mas90/soa/startup.m4p"_s}) {
            QDir().mkpath(QFileInfo(m_place.filePath(name)).path());
            QFile(m_place.filePath(name)).open(QIODevice::WriteOnly);
        }
        QFile launch(m_place.filePath(u"program/mas90.ini"_s));
        EXPECT_TRUE(launch.open(QIODevice::WriteOnly));
        launch.write((Root() + u"\n-ARG X\n"_s).toUtf8());
    }

    QString Root() const { return m_place.filePath(u"network/mas90"_s); }
    void Show()
    {
        m_form.Load();
        ASSERT_TRUE(ShowActive(m_form));
        ASSERT_THAT(m_messages.Texts(), IsEmpty());
    }
    QPushButton &Button(const char *name) { return Control<QPushButton>(m_form, name); }
    QLineEdit &Path() { return Control<QLineEdit>(m_form, "txtMas90Path"); }

    QTemporaryDir m_place;
    SlowFolder m_network{m_place.filePath(u"network"_s)};
    Tables m_tables{m_place.filePath(u"program"_s)};
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

TEST_F(SlowRoot, KeepsTheSettingsPaintedAndAcceptsThemOnce)
{
    Show();
    const BusyMoment busy(
        m_form,
        [&] {
            QTest::mouseClick(&Button("cmdAccept"), Qt::LeftButton);
            QTest::mouseClick(&Button("cmdBrowse"), Qt::LeftButton);
        },
        [&] { m_network.Answer(); });
    m_network.BeSlow();
    QTest::mouseClick(&Button("cmdAccept"), Qt::LeftButton);
    EXPECT_FALSE(m_network.GaveUp());
    EXPECT_TRUE(busy.WasPainted());
    EXPECT_THAT(m_browser.Prompts, IsEmpty());
    EXPECT_FALSE(m_form.isVisible());
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
}

TEST_F(SlowRoot, KeepsWhatIsTypedMeanwhile)
{
    Show();
    Path().setFocus();
    Path().end(false);
    QTest::keyClicks(&Path(), u"x"_s);
    const BusyMoment busy(
        m_form, [&] { QTest::keyClick(&Path(), Qt::Key_Backspace); }, [&] { m_network.Answer(); });
    m_network.BeSlow();
    QTest::mouseClick(&Button("cmdAccept"), Qt::LeftButton);
    EXPECT_TRUE(busy.WasPainted());
    EXPECT_THAT(m_messages.Texts(),
        ElementsAre(u"MAS 90 or MAS 200 client not found in path: \r\n"_s + Root() + u'x'));
    EXPECT_TRUE(m_form.isVisible());
    QCoreApplication::processEvents();
    EXPECT_EQ(Path().text(), Root());
}

TEST_F(SlowRoot, KeepsTheWindowPaintedWhileAChosenFolderIsLookedAt)
{
    Show();
    m_browser.Folder = m_place.filePath(u"network"_s);
    const BusyMoment busy(
        m_form, [] {}, [&] { m_network.Answer(); });
    m_network.BeSlow();
    QTest::mouseClick(&Button("cmdBrowse"), Qt::LeftButton);
    EXPECT_FALSE(m_network.GaveUp());
    EXPECT_TRUE(busy.WasPainted());
    EXPECT_EQ(Path().text(), Root());
}

TEST_F(SlowRoot, KeepsTheMainWindowPaintedWhileTheSettingsAreRead)
{
    QWidget main;
    ASSERT_TRUE(ShowActive(main));
    const BusyMoment busy(
        main, [] {}, [&] { m_network.Answer(); });
    m_network.BeSlow();
    m_form.Load();
    EXPECT_FALSE(m_network.GaveUp());
    EXPECT_TRUE(busy.WasPainted());
    EXPECT_EQ(Path().text(), Root());
}

TEST_F(SlowRoot, IsLookedAtAsLittleAsPossible)
{
    const int before = m_network.Looks();
    m_form.Load();
    EXPECT_EQ(m_network.Looks() - before, 2);
}
