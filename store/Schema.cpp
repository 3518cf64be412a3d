#include "store/Schema.h"

#include "store/StoreErrors.h"

#include <QSet>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

std::optional<FieldType> TypeFromName(QStringView name)
{
    if (name == "String"_L1)
        return FieldType::String;
    if (name == "Date"_L1)
        return FieldType::Date;
    if (name == "Currency"_L1)
        return FieldType::Currency;
    return {};
}

bool IsFieldName(QStringView name)
{
    return !name.isEmpty() && std::all_of(name.begin(), name.end(), [](QChar c) {
        return c == u'_' || (c.unicode() < 128 && c.isLetterOrNumber());
    });
}

/// Names under which SQLite itself numbers a table's rows. A column of that name would hide them.
bool IsReserved(const QString &lowerName)
{
    return lowerName == "rowid"_L1 || lowerName == "oid"_L1 || lowerName == "_rowid_"_L1;
}

} // namespace

Schema ParseSchema(QStringView text)
{
    QList<QStringView> pairs = text.split(u',');
    if (pairs.size() < 2 || !pairs.takeLast().trimmed().isEmpty())
        RaiseStoreError(StoreErrors::MalformedSchema,
            u"The schema text does not end with a comma: "_s + text.toString());

    Schema schema;
    QSet<QString> names;
    for (const QStringView pair : pairs) {
        const QList<QStringView> words = pair.trimmed().split(u' ', Qt::SkipEmptyParts);
        const std::optional<FieldType> type
            = words.size() == 2 ? TypeFromName(words[1]) : std::nullopt;
        if (!type || !IsFieldName(words[0]))
            RaiseStoreError(StoreErrors::MalformedSchema,
                u"The schema text is malformed at \""_s + pair.trimmed().toString() + u"\""_s);
        const QString name = words[0].toString();
        if (IsReserved(name.toLower()))
            RaiseStoreError(StoreErrors::MalformedSchema,
                u"The schema text names a field "_s + name + u", which no field can be called"_s);
        if (names.contains(name.toLower()))
            RaiseStoreError(StoreErrors::MalformedSchema,
                u"The schema text names the field "_s + name + u" twice"_s);
        names.insert(name.toLower());
        schema.push_back({name, *type});
    }
    return schema;
}
