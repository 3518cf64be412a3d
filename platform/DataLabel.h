#pragma once

#include <QString>
#include <QVariant>
#include <QWidget>

/// What of a text a person can look at in one place; a longer one would be laid out for seconds.
constexpr qsizetype MostCharactersShown = 1000;

/// Shows, on a label or a button, a text that comes from a database. One that is longer than any
/// name does not make its window wider: it then shows what there is room for.
template <class Widget>
void ShowData(Widget &widget, const QString &text)
{
    constexpr qsizetype longestName = 120;
    constexpr const char *ownPolicy = "policyOfShortTexts";
    const QVariant own = widget.property(ownPolicy);
    if (text.size() > longestName && !own.isValid()) {
        QSizePolicy policy = widget.sizePolicy();
        widget.setProperty(ownPolicy, QVariant::fromValue(policy));
        policy.setHorizontalPolicy(QSizePolicy::Ignored);
        widget.setSizePolicy(policy);
    } else if (text.size() <= longestName && own.isValid()) {
        widget.setSizePolicy(own.template value<QSizePolicy>());
        widget.setProperty(ownPolicy, QVariant());
    }
    widget.setText(text.left(MostCharactersShown));
}
