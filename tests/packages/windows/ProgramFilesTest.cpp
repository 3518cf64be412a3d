// What Windows reads from the files of the programs and of the setup program.

#include "tests/packages/windows/SetupFixture.h"

#include <QDir>
#include <QFileInfo>

#include <gmock/gmock.h>

using namespace Qt::StringLiterals;
using testing::HasSubstr;

namespace {

class ProgramFiles : public SetupFixture
{
protected:
    void SetUp() override
    {
        SetupFixture::SetUp();
        if (!HasFatalFailure())
            InstallHere();
    }

    QStringList Programs() const
    {
        return {Folder() + u"/WorklogRemote.exe"_s, Folder() + u"/pvxwin32.exe"_s,
            Folder() + u"/worklog-report.exe"_s};
    }
    QStringList All() const
    {
        return Programs() + QStringList{SetupProgram(), Folder() + u"/uninstall.exe"_s};
    }
};

const wchar_t *Native(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

/// One of the texts in the Details of a file's properties.
QString Detail(const QString &fileName, const QString &name)
{
    const QString path = QDir::toNativeSeparators(fileName);
    QByteArray block(qsizetype(GetFileVersionInfoSizeW(Native(path), nullptr)), '\0');
    void *text = nullptr;
    UINT length = 0;
    for (const QString &language : {u"040904B0"_s, u"040904E4"_s}) {
        if (GetFileVersionInfoW(Native(path), 0, DWORD(block.size()), block.data())
            && VerQueryValueW(block.data(),
                Native(u"\\StringFileInfo\\%1\\%2"_s.arg(language, name)), &text, &length))
            return QString::fromWCharArray(static_cast<const wchar_t *>(text));
    }
    return {};
}

/// The resources of a type in a program's file, each with its bytes.
class Resources
{
public:
    Resources(const QString &fileName, const wchar_t *type)
        : m_file(LoadLibraryExW(
            Native(QDir::toNativeSeparators(fileName)), nullptr, LOAD_LIBRARY_AS_DATAFILE))
    {
        EnumResourceNamesW(m_file, type, Add, reinterpret_cast<LONG_PTR>(this));
    }
    ~Resources() { FreeLibrary(m_file); }
    Resources(const Resources &) = delete;
    Resources &operator=(const Resources &) = delete;

    QList<QByteArray> All;

private:
    static BOOL CALLBACK Add(HMODULE file, LPCWSTR type, LPWSTR name, LONG_PTR me)
    {
        const HRSRC found = FindResourceW(file, name, type);
        const auto *bytes = static_cast<const char *>(LockResource(LoadResource(file, found)));
        reinterpret_cast<Resources *>(me)->All.append(
            QByteArray(bytes, qsizetype(SizeofResource(file, found))));
        return TRUE;
    }

    HMODULE m_file;
};

} // namespace

TEST_F(ProgramFiles, SayWhatTheyAre)
{
    const QStringList descriptions{
        u"Worklog Remote"_s, u"Worklog Remote exchange client"_s, u"Worklog Remote reports"_s};
    for (qsizetype i = 0; i < descriptions.size(); ++i)
        EXPECT_EQ(Detail(Programs()[i], u"FileDescription"_s), descriptions[i]);
    EXPECT_EQ(Detail(SetupProgram(), u"FileDescription"_s), u"Worklog Remote Setup"_s);
    for (const QString &file : All()) {
        EXPECT_EQ(Detail(file, u"ProductName"_s), u"Worklog Remote"_s);
        EXPECT_EQ(Detail(file, u"CompanyName"_s), u"The Worklog Remote developers"_s);
        EXPECT_EQ(Detail(file, u"ProductVersion"_s), QStringLiteral(WORKLOG_VERSION));
        EXPECT_EQ(Detail(file, u"FileVersion"_s), QStringLiteral(WORKLOG_VERSION));
        EXPECT_THAT(Detail(file, u"LegalCopyright"_s).toStdString(),
            HasSubstr("Copyright (c) 2026 The Worklog Remote"));
    }
    for (const QString &program : Programs())
        EXPECT_EQ(Detail(program, u"OriginalFilename"_s), QFileInfo(program).fileName());
}

TEST_F(ProgramFiles, HaveTheProgramsIconInNineSizes)
{
    for (const QString &file : All()) {
        const Resources groups(file, MAKEINTRESOURCEW(14)); // groups of icons
        ASSERT_FALSE(groups.All.isEmpty()) << file.toStdString();
        QList<int> sizes;
        const QByteArray &group = groups.All[0];
        for (qsizetype at = 6; at + 14 <= group.size(); at += 14)
            sizes.append(quint8(group[at]));
        // 0 stands for 256.
        EXPECT_EQ(sizes, (QList<int>{16, 20, 24, 32, 40, 48, 64, 128, 0})) << file.toStdString();
    }
}

TEST_F(ProgramFiles, HaveOneManifestThatAsksForNoRights)
{
    for (const QString &file : All()) {
        const Resources manifests(file, MAKEINTRESOURCEW(24));
        ASSERT_EQ(manifests.All.size(), 1) << file.toStdString();
        const std::string manifest = manifests.All[0].toStdString();
        EXPECT_THAT(manifest, HasSubstr("level=\"asInvoker\""));
        EXPECT_THAT(manifest, HasSubstr("{8e0f7a12-bfb3-4fe8-b9a5-48fd50a15a9a}")); // Windows 10
    }
    for (const QString &program : Programs()) {
        const std::string manifest = Resources(program, MAKEINTRESOURCEW(24)).All[0].toStdString();
        for (const char *line : {">PerMonitorV2, PerMonitor<", ">true/pm<", ">UTF-8<",
                 "longPathAware xmlns", "Microsoft.Windows.Common-Controls"})
            EXPECT_THAT(manifest, HasSubstr(line)) << program.toStdString();
    }
}
