#include "platform/clsDatePicker.h"

#include <QCalendarWidget>
#include <QKeyEvent>

clsDatePicker::clsDatePicker(QWidget *parent)
    : QDateEdit(parent)
{
    setCalendarPopup(true);
    connect(calendarWidget(), &QCalendarWidget::clicked, this, &clsDatePicker::Click);
    connect(calendarWidget(), &QCalendarWidget::activated, this, &clsDatePicker::Click);
}

bool clsDatePicker::focusNextPrevChild(bool next)
{
    return QWidget::focusNextPrevChild(next);
}

void clsDatePicker::keyPressEvent(QKeyEvent *event)
{
    const Section before = currentSection();
    const bool types = !event->text().isEmpty() && event->text().at(0).isDigit();
    QDateEdit::keyPressEvent(event);
    if (types && currentSection() != before)
        setSelectedSection(before);
}
