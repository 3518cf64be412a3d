#include "sync/BackupFolders.h"

#include "platform/Paths.h"

#include <QDir>
#include <QRegularExpression>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

constexpr int NumberWidth = 6;
const QString Unfinished = QStringLiteral(".new");

/// 0 for a name without a number; std::nullopt for a folder that is not ours.
std::optional<qulonglong> NumberOf(const QString &name)
{
    static const QRegularExpression numbered(u"^(\\d{6,18})-\\d{8}-\\d{6}(\\.new)?$"_s);
    static const QRegularExpression timed(u"^\\d{8}-\\d{6}(-\\d\\d)?(\\.new)?$"_s);
    if (const auto match = numbered.match(name); match.hasMatch())
        return match.captured(1).toULongLong();
    return timed.match(name).hasMatch() ? std::optional<qulonglong>(0) : std::nullopt;
}

} // namespace

BackupFolders::BackupFolders(const QString &programFolder)
    : m_path(JoinPath(programFolder, u"backup"_s))
{
}

QString BackupFolders::PathOf(const QString &name) const
{
    return JoinPath(m_path, name);
}

QString BackupFolders::UnfinishedName(const QString &name)
{
    return name + Unfinished;
}

QStringList BackupFolders::NamesWith(bool unfinished) const
{
    QStringList names = QDir(m_path).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    erase_if(names, [&](const QString &name) {
        return !NumberOf(name) || name.endsWith(Unfinished) != unfinished;
    });
    std::stable_sort(names.begin(), names.end(), [](const QString &one, const QString &other) {
        return NumberOf(one).value_or(0) < NumberOf(other).value_or(0);
    });
    return names;
}

QStringList BackupFolders::Names() const
{
    return NamesWith(false);
}

QStringList BackupFolders::UnfinishedNames() const
{
    return NamesWith(true);
}

QString BackupFolders::NextName(const QDateTime &now) const
{
    const QStringList names = Names();
    const qulonglong last = names.isEmpty() ? 0 : NumberOf(names.last()).value_or(0);
    return QString::number(last + 1).rightJustified(NumberWidth, u'0')
        + now.toString(u"-yyyyMMdd-HHmmss"_s);
}
