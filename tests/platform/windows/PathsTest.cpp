#include "platform/Paths.h"

#include "tests/support/PrintQt.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(FindIgnoringCase, FindsTheFileUnderTheNameThatWasAskedFor)
{
    const QTemporaryDir folder;
    const QString root = QDir::toNativeSeparators(folder.path());
    ASSERT_TRUE(QDir(root).mkpath(u"BÜRO/Home"_s));
    QFile file(root + u"\\BÜRO\\Home\\pvxwin32.exe"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(FindIgnoringCase(root, u"büro/home/PVXWIN32.exe"_s),
        root + u"\\büro\\home\\PVXWIN32.exe"_s);
}

TEST(JoinPath, DoesNotDoubleTheSeparatorOfADrive)
{
    EXPECT_EQ(JoinPath(u"C:\\"_s, u"mas90"_s), u"C:\\mas90"_s);
    EXPECT_EQ(JoinPath(u"C:\\Program Files"_s, u"Home/pvxwin32.exe"_s),
        u"C:\\Program Files\\Home\\pvxwin32.exe"_s);
}
