// The user's settings are in the registry, under the name of the program.

#include "platform/clsSettings.h"

#include "tests/support/PrintQt.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <string>

#include <windows.h>

using namespace Qt::StringLiterals;

namespace {

const QString OneProgram = u"Worklog settings test"_s;

/// What stands in HKEY_CURRENT_USER\\Software\\<program>\\<section>, "(none)" for no text.
QString InRegistry(const QString &program, const QString &section, const QString &key)
{
    const std::wstring path = (u"Software\\"_s + program + u'\\' + section).toStdWString();
    std::wstring text(1000, L'\0');
    auto size = static_cast<DWORD>(text.size() * sizeof(wchar_t));
    if (::RegGetValueW(HKEY_CURRENT_USER, path.c_str(), key.toStdWString().c_str(), RRF_RT_REG_SZ,
            nullptr, text.data(), &size)
        != ERROR_SUCCESS)
        return u"(none)"_s;
    return QString::fromWCharArray(text.c_str());
}

void Forget(const QString &program)
{
    ::RegDeleteTreeW(HKEY_CURRENT_USER, (u"Software\\"_s + program).toStdWString().c_str());
}

class Settings : public testing::Test
{
protected:
    Settings() { Forget(OneProgram); }
    ~Settings() override { Forget(OneProgram); }
};

} // namespace

TEST_F(Settings, AreFoundAgainUnderTheProgramsName)
{
    clsUserSettings(OneProgram).SaveSetting(u"MAS200"_s, u"Host"_s, u"winter, or so"_s);
    const clsUserSettings again(OneProgram);
    EXPECT_EQ(again.GetSetting(u"MAS200"_s, u"Host"_s, u"none"_s), u"winter, or so"_s);
    EXPECT_EQ(again.GetSetting(u"MAS200"_s, u"Port"_s, u"none"_s), u"none"_s);
    EXPECT_EQ(clsUserSettings(OneProgram + u" 2"_s).GetSetting(u"MAS200"_s, u"Host"_s, u"none"_s),
        u"none"_s);
    EXPECT_EQ(InRegistry(OneProgram, u"MAS200"_s, u"Host"_s), u"winter, or so"_s);
}

TEST_F(Settings, AnEmptyTextIsASettingToo)
{
    clsUserSettings settings(OneProgram);
    settings.SaveSetting(u"MAS200"_s, u"Host"_s, QString());
    EXPECT_EQ(settings.GetSetting(u"MAS200"_s, u"Host"_s, u"none"_s), QString());
    EXPECT_EQ(InRegistry(OneProgram, u"MAS200"_s, u"Host"_s), QString());
}

TEST_F(Settings, BelongToTheExecutable)
{
    const QString name = QFileInfo(QCoreApplication::applicationFilePath()).completeBaseName();
    EXPECT_EQ(clsUserSettings::ExecutableName(), name);
    clsUserSettings().SaveSetting(u"MAS200"_s, u"Host"_s, u"winter"_s);
    EXPECT_EQ(InRegistry(name, u"MAS200"_s, u"Host"_s), u"winter"_s);
    Forget(name);
}
