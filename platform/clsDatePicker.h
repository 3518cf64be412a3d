#pragma once

#include <QDateEdit>

/// A date field with a calendar. Tab leaves it from whichever part of the date the caret is in, and
/// typing stays in that part: only an arrow key moves on to the next one.
class clsDatePicker : public QDateEdit
{
    Q_OBJECT

public:
    explicit clsDatePicker(QWidget *parent = nullptr);

signals:
    void Click(); ///< a date was chosen in the calendar

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent *event) override;
};
