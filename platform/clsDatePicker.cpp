#include "platform/clsDatePicker.h"

bool clsDatePicker::focusNextPrevChild(bool next)
{
    return QWidget::focusNextPrevChild(next);
}
