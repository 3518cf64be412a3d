#pragma once

#include <QDir>
#include <QString>

/// A path, or a text with paths, as this system's programs write it.
inline QString Native(const QString &text)
{
    return QDir::toNativeSeparators(text);
}
