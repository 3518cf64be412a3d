#include "entry/EntryScreen.h"

void SelectComboItem(ControlState &list, const QString &text)
{
    // One step past the last item, whose text reads as empty: the inclusive bound is kept.
    for (int index = 0; index <= list.Items.size(); ++index) {
        if (list.Items.value(index) == text) {
            list.Index = index < list.Items.size() ? index : -1;
            return;
        }
    }
}
