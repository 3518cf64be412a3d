#include "exchange/BatchNote.h"

#include "store/BatchName.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype DigestLength = 64;

bool IsDigest(QStringView text)
{
    return text.size() == DigestLength && std::all_of(text.begin(), text.end(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f');
    });
}

} // namespace

std::optional<BatchNote> BatchNote::FromText(const QString &text)
{
    if (text.isEmpty())
        return BatchNote();
    const qsizetype blank = text.indexOf(u' ');
    const BatchNote note
        = {blank < 0 ? text : text.left(blank), blank < 0 ? QString() : text.mid(blank + 1)};
    if (!IsBatchName(note.Batch) || (blank >= 0 && !IsDigest(note.Digest)))
        return {};
    return note;
}

QString BatchNote::Text() const
{
    return Digest.isEmpty() ? Batch : Batch + u' ' + Digest;
}
