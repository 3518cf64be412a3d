#include "sync/SyncNote.h"

#include "platform/clsRunTimeError.h"
#include "platform/DurableFiles.h"
#include "platform/Paths.h"
#include "platform/PlainFiles.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 MaxNoteBytes = 1024 * 1024;

QByteArray Contents(const QString &path)
{
    try {
        QFile file(path);
        OpenPlainFile(file, PlainFileUse::Read, MaxNoteBytes);
        return file.readAll();
    } catch (const clsRunTimeError &) {
        return {};
    }
}

} // namespace

QString SyncNotePath(const QString &folder)
{
    return JoinPath(folder, u"unfinished.json"_s);
}

void WriteSyncNote(const QString &folder, const SyncNote &note)
{
    QJsonObject options;
    for (auto option = note.Options.begin(); option != note.Options.end(); ++option)
        options.insert(option.key(), option.value());
    const QJsonObject contents{{u"Worklog"_s, note.Worklog}, {u"Options"_s, options}};
    const QString path = SyncNotePath(folder);
    QFile file(path);
    OpenPlainFile(file, PlainFileUse::CreateNew);
    WriteWhole(file, path, QJsonDocument(contents).toJson());
    file.close();
    SyncFile(path);
}

std::optional<SyncNote> ReadSyncNote(const QString &folder)
{
    const QString path = SyncNotePath(folder);
    if (!QFileInfo::exists(path))
        return {};
    const QJsonObject contents = QJsonDocument::fromJson(Contents(path)).object();
    SyncNote note;
    note.Worklog = contents.value("Worklog"_L1).toString();
    const QJsonObject options = contents.value("Options"_L1).toObject();
    for (auto option = options.begin(); option != options.end(); ++option)
        note.Options.insert(option.key(), option.value().toString());
    return note;
}

void RemoveSyncNote(const QString &folder)
{
    if (QFile::remove(SyncNotePath(folder)))
        SyncFolder(folder);
}
