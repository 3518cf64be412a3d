#pragma once

#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QStyle>
#include <QStyleOptionComboBox>
#include <QStyleOptionFrame>

#include <algorithm>

/// Makes the box wide enough for its longest text, in its own letters.
inline void FitToText(QLineEdit &box, const QString &longest)
{
    constexpr int marginsAndCaret = 2 * 2 + 2;
    QStyleOptionFrame option;
    option.initFrom(&box);
    option.lineWidth = box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &box);
    const QSize text(box.fontMetrics().horizontalAdvance(longest) + marginsAndCaret, 1);
    const int width
        = box.style()->sizeFromContents(QStyle::CT_LineEdit, &option, text, &box).width();
    box.setMinimumWidth(width);
    box.setMaximumWidth(std::max(width, box.maximumWidth()));
}

/// The opened list shows its items as a whole, also where they are longer than the closed list.
inline void FitOpenedList(QComboBox &list)
{
    constexpr int widest = 600;
    constexpr int margins = 24;
    int width = 0;
    for (int i = 0; i < list.count(); ++i)
        width = std::max(width, list.fontMetrics().horizontalAdvance(list.itemText(i)));
    list.view()->setMinimumWidth(std::min(width + margins, widest));
}

/// The chosen item of a list that has too little room for it; empty where it is shown whole.
inline QString ClippedItem(const QComboBox &list)
{
    QStyleOptionComboBox option;
    option.initFrom(&list);
    option.editable = false;
    const int room
        = list.style()
              ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, &list)
              .width();
    const QString text = list.currentText();
    return list.fontMetrics().horizontalAdvance(text) > room ? text : QString();
}
