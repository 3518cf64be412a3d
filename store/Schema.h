#pragma once

#include <QString>
#include <QStringView>

#include <vector>

/// The three types that a field of a record can have.
enum class FieldType
{
    String,
    Date,
    Currency
};

struct SchemaField
{
    QString Name;
    FieldType Type = FieldType::String;
};

/// The fields of one table, in order; a field's index is its zero-based place here.
using Schema = std::vector<SchemaField>;

/// Reads a schema text: a field name, a blank, a type name and a comma, repeated. Blanks after a
/// comma carry no meaning; the last comma is required.
///
/// Errors: StoreErrors::MalformedSchema, with the text that could not be read, for a missing
///         comma, name or type, an unknown type, a name with other than letters, digits and
///         underscores, a name that comes twice, and rowid, oid and _rowid_.
Schema ParseSchema(QStringView text);
