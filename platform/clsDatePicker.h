#pragma once

#include "platform/DateTyping.h"

#include <QDateEdit>

/// A date field "MM/dd/yy" with a calendar. One part of the date is selected: digits are typed into
/// it, Up and Down step it. Each part takes two digits, the third key goes to the next part; "/",
/// "-" and "." go there at once, as Right does. Only Tab leaves the field, from whichever part.
///
/// Alt+Down or F4 opens the calendar. What is pasted is a whole date.
class clsDatePicker : public QDateEdit
{
    Q_OBJECT

public:
    explicit clsDatePicker(QWidget *parent = nullptr);

    /// As the focus enters the field: nothing is typed yet.
    void BeginTyping();
    /// Ends the typing, as leaving the field does. False when what was typed is no date: the date
    /// is shown again, and Notice() says why.
    bool FinishTyping();
    QString Notice() const; ///< why what was typed was refused; empty without a reason
    bool event(QEvent *event) override;

signals:
    void Change(QDate date); ///< the field has another date, from a key or from the calendar
    void Click(); ///< a date was chosen in the calendar, also the one that the field had
    void Typed(); ///< a digit was typed, or a date pasted; the date may be unchanged
    void NoticeChanged(); ///< something was refused, and nothing else has changed

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    bool focusNextPrevChild(bool next) override;
    void focusInEvent(QFocusEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    QString textFromDateTime(const QDateTime &dateTime) const override;
    QDateTime dateTimeFromText(const QString &text) const override;
    QValidator::State validate(QString &text, int &position) const override;

private:
    DateTyping &Typing(); ///< of the date as it now is
    void ShowTyped();
    void TypeCharacter(QChar character);
    void MoveTo(int part);
    void Paste();
    void Copy() const;
    void OpenCalendar();

    void CalendarShown();
    void CalendarHidden();
    void Choose(QDate date);

    DateTyping m_typing;
    bool m_inCalendar = false; // the date is one that is looked at, and not chosen yet
    QDate m_dateBefore; // as the calendar opened
    qint16 m_typedKeys = 0; // since the present part was entered
};
