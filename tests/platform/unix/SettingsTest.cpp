#include "platform/clsSettings.h"

#include "platform/clsRunTimeError.h"
#include "tests/support/PrintQt.h"
#include "tests/support/Raised.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSettings>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The user's settings lie in a folder of the test's own.
class Settings : public testing::Test
{
protected:
    Settings()
    {
        QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder.path());
    }

    QTemporaryDir m_folder;
};

} // namespace

TEST_F(Settings, AreFoundAgainUnderTheProgramsName)
{
    clsUserSettings(u"OneProgram"_s).SaveSetting(u"MAS200"_s, u"Host"_s, u"winter, or so"_s);
    const clsUserSettings again(u"OneProgram"_s);
    EXPECT_EQ(again.GetSetting(u"MAS200"_s, u"Host"_s, u"none"_s), u"winter, or so"_s);
    EXPECT_EQ(again.GetSetting(u"MAS200"_s, u"Port"_s, u"none"_s), u"none"_s);
    EXPECT_EQ(again.GetSetting(u"Other"_s, u"Host"_s, u"none"_s), u"none"_s);
    EXPECT_EQ(clsUserSettings(u"AnotherProgram"_s).GetSetting(u"MAS200"_s, u"Host"_s, u"none"_s),
        u"none"_s);
}

TEST_F(Settings, AnEmptyTextIsASettingToo)
{
    clsUserSettings settings(u"OneProgram"_s);
    settings.SaveSetting(u"MAS200"_s, u"Host"_s, QString());
    EXPECT_EQ(settings.GetSetting(u"MAS200"_s, u"Host"_s, u"none"_s), QString());
}

TEST_F(Settings, BelongToTheExecutable)
{
    EXPECT_EQ(clsUserSettings::ExecutableName(),
        QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName());
    clsUserSettings().SaveSetting(u"MAS200"_s, u"Host"_s, u"winter"_s);
    EXPECT_EQ(QDir(m_folder.path()).entryList(QDir::Files),
        QStringList{clsUserSettings::ExecutableName() + u".conf"_s});
}

TEST_F(Settings, ThatCannotBeSavedAreAnError)
{
    const QString file = m_folder.filePath(u"OneProgram.conf"_s);
    ASSERT_TRUE(QDir().mkpath(file + u"/in the way"_s));
    clsUserSettings settings(u"OneProgram"_s);
    const Raised raised
        = RaisedBy([&] { settings.SaveSetting(u"MAS200"_s, u"Host"_s, u"winter"_s); });
    EXPECT_EQ(raised.Number, RunTimeErrors::PathAccess);
    EXPECT_TRUE(raised.Names(file)) << raised.Description.toStdString();
}
