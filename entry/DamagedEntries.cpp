#include "entry/DamagedEntries.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr size_t MostLines = 10;
constexpr qsizetype MostOfText = 40;

QString Short(const QString &text)
{
    const QString oneLine = text.simplified();
    return oneLine.size() <= MostOfText ? oneLine : oneLine.left(MostOfText) + u"..."_s;
}

QString Line(const EntryRecord &entry, qint32 position)
{
    const QString date = entry.Date.isValid() ? entry.Date.toString(u"MM/dd/yyyy"_s) : u"no date"_s;
    const QStringList parts = {u"Record "_s + QString::number(position + 1) + u": "_s + date,
        Short(entry.Customer_Number), Short(entry.Project_Number), Short(entry.Activity_Number),
        FormatCurrency(entry.Hours, 2, LeadingZero::Yes), Short(entry.Description)};
    return parts.join(u", "_s);
}

} // namespace

QString DamagedEntriesText(modDBEntr &entries, const std::vector<qint32> &positions)
{
    QString text = positions.size() == 1
        ? u"This entry is not as it was saved:"_s
        : QString::number(positions.size()) + u" entries are not as they were saved:"_s;
    text += u"\n\n"_s;
    for (size_t i = 0; i < std::min(positions.size(), MostLines); ++i) {
        EntryRecord entry;
        entries.MoveToPosition(positions[i]);
        entries.ReadEntry(entry);
        text += Line(entry, positions[i]) + u'\n';
    }
    if (positions.size() > MostLines)
        text += u"and "_s + QString::number(positions.size() - MostLines) + u" more\n"_s;
    return text
        + u"\nThe disk may have damaged it, or another program has changed it. Correct and save, "_s
          u"or delete, what is wrong."_s;
}
