#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QTemporaryDir>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

/// What the targets share. Each defines LLVMFuzzerTestOneInput: libFuzzer drives it in the preset
/// "fuzz", and ReplayCorpus.cpp runs it over the files kept in corpus/ in every other build.

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size);

/// What must hold for every input; a fuzzer takes the abort for a find.
#define FUZZ_EXPECT(condition)                                                                     \
    do {                                                                                           \
        if (!(condition)) {                                                                        \
            std::fprintf(stderr, "%s:%d: %s\n", __FILE__, __LINE__, #condition);                   \
            std::abort();                                                                          \
        }                                                                                          \
    } while (false)

inline QByteArray BytesOf(const uint8_t *data, size_t size)
{
    return QByteArray(
        static_cast<const char *>(static_cast<const void *>(data)), static_cast<qsizetype>(size));
}

/// A file of that name in a folder of this process, in memory where there is such a place.
inline QString FuzzFile(const QString &name, const QByteArray &contents)
{
    static const QTemporaryDir folder(
        (QFileInfo(QStringLiteral("/dev/shm")).isWritable() ? QStringLiteral("/dev/shm")
                                                            : QDir::tempPath())
        + QStringLiteral("/worklog-fuzz-XXXXXX"));
    const QString path = folder.filePath(name);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size())
        std::abort();
    return path;
}
