#pragma once

#include <QString>

#include <optional>

/// What the note of an Entries database says about the batch in which its entries are delivered
/// next.
///
/// Shape:  "<batch> <digest>" while the batch is being delivered, "<batch>" before that, nothing in
///         a new database.
struct BatchNote
{
    QString Batch; ///< empty: no name has been reserved yet
    QString Digest; ///< of the file that is being delivered, see Uploads::DigestOf; else empty

    /// Nothing for a text that no exchange client has written.
    static std::optional<BatchNote> FromText(const QString &text);
    QString Text() const;
};
