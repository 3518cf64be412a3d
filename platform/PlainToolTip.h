#pragma once

#include "platform/DataLabel.h"

#include <QString>
#include <QTextDocument>

/// The text for a tool tip that shows it as it is: what looks like markup is no markup there.
inline QString PlainToolTip(const QString &text)
{
    const QString shown = text.left(MostCharactersShown);
    return Qt::mightBeRichText(shown)
        ? QLatin1String("<span>") + shown.toHtmlEscaped() + QLatin1String("</span>")
        : shown;
}
