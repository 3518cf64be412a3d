#pragma once

#include <QDateEdit>

/// A date field with a calendar. Tab leaves it from whichever part of the date the caret is in.
class clsDatePicker : public QDateEdit
{
    Q_OBJECT

public:
    using QDateEdit::QDateEdit;

protected:
    bool focusNextPrevChild(bool next) override;
};
