#pragma once

#include <QString>

#include <optional>

/// What the note of an Entries database says about the batch that is being handed over.
///
/// Shape:  "<batch> <digest>"; without the digest in notes of earlier versions. Nothing for no
/// note.
struct BatchNote
{
    QString Batch; ///< empty: nothing is being handed over
    QString Digest; ///< of the batch's file, see Uploads::DigestOf; empty when the note has none

    /// Nothing for a text that no exchange client has written.
    static std::optional<BatchNote> FromText(const QString &text);
    QString Text() const;
};
