#pragma once

#include "tests/endtoend/driver/ProgramUnderTest.h"
#include "tests/endtoend/driver/VirtualDisplay.h"

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// A computer on which nothing of ours is installed yet.
class PackageFixture : public testing::Test
{
protected:
    QString Place(const QString &name) const { return m_place.filePath(name); }

    /// The one file in the folder of the built packages that has this ending.
    static QString Package(const QString &ending);

    /// Runs a program to its end; its standard output. Anything but `status` fails the test.
    static QByteArray Run(const QString &program, const QStringList &arguments, int status = 0,
        const QMap<QString, QString> &environment = {});

    /// An accounting installation made by the packaged client, and the mas90.ini for it.
    QString MakeInstallation(const QString &client) const;
    static QByteArray LaunchFile(const QString &root);
    static void Write(const QString &fileName, const QByteArray &bytes);
    static QByteArray Read(const QString &fileName);

    /// Everything below a folder with what is in it, to see what has changed.
    static QMap<QString, QByteArray> Contents(const QString &folder);

    /// The files below a folder that have these bytes anywhere in them.
    static QStringList FilesThatSay(const QString &folder, const QByteArray &bytes);

    /// From the first message to the company's data in a window that takes the keys.
    static void SynchroniseFirst(ProgramUnderTest &program);

    QTemporaryDir m_place;
};
