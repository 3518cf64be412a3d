#include "platform/clsDatePicker.h"

#include "platform/FormEvents.h"

#include <QApplication>
#include <QCalendarWidget>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QStyleOptionComboBox>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int CharactersOfPart = 3; // two digits and what separates them from the next ones
constexpr int LongestTextNamed = 30; // in a notice

bool OpensCalendar(const QKeyEvent &event)
{
    return event.key() == Qt::Key_F4
        || (event.key() == Qt::Key_Down && event.modifiers().testFlag(Qt::AltModifier));
}

/// A key that types a character; the window's and those of a command do not.
bool TypesCharacter(const QKeyEvent &event)
{
    return !BelongsToTheWindow(event) && !event.text().isEmpty() && event.text().at(0).isPrint()
        && !event.modifiers().testFlag(Qt::ControlModifier)
        && !event.modifiers().testFlag(Qt::MetaModifier);
}

} // namespace

clsDatePicker::clsDatePicker(QWidget *parent)
    : QDateEdit(parent)
{
    setDisplayFormat(u"MM/dd/yy"_s);
    setCalendarPopup(true);
    setWrapping(true);
    lineEdit()->installEventFilter(this);
    calendarWidget()->installEventFilter(this);
    connect(calendarWidget(), &QCalendarWidget::clicked, this, &clsDatePicker::Choose);
    connect(calendarWidget(), &QCalendarWidget::activated, this, &clsDatePicker::Choose);
    connect(this, &QDateEdit::dateChanged, this, [this](QDate date) {
        if (!m_inCalendar)
            emit Change(date);
    });
}

DateTyping &clsDatePicker::Typing()
{
    if (m_typing.Date() != date())
        m_typing.Begin(date());
    return m_typing;
}

void clsDatePicker::BeginTyping()
{
    m_typing.Begin(date());
    m_typedKeys = 0;
}

bool clsDatePicker::FinishTyping()
{
    if (Typing().Finish())
        return true;
    m_typedKeys = 0;
    setDate(m_typing.Date());
    setSelectedSection(currentSection());
    return false;
}

QString clsDatePicker::Notice() const
{
    return m_typing.Date() == date() ? m_typing.Notice() : QString();
}

void clsDatePicker::ShowTyped()
{
    const Section part = currentSection();
    setDate(m_typing.Date());
    setSelectedSection(part);
    emit Typed();
}

void clsDatePicker::TypeCharacter(QChar character)
{
    constexpr qint16 keyThatMovesOn = 3;
    if (u"/-."_s.contains(character))
        return MoveTo(currentSectionIndex() + 1);
    if (++m_typedKeys == keyThatMovesOn) {
        MoveTo(currentSectionIndex() + 1);
        m_typedKeys = 1;
    }
    if (!character.isDigit())
        return;
    Typing().Type(static_cast<DatePart>(currentSectionIndex()), character.digitValue());
    ShowTyped();
}

void clsDatePicker::MoveTo(int part)
{
    m_typedKeys = 0;
    const bool typed = Typing().EndPart();
    setSelectedSection(sectionAt(std::clamp(part, 0, sectionCount() - 1)));
    if (typed)
        emit NoticeChanged();
}

void clsDatePicker::Paste()
{
    const QString text = QApplication::clipboard()->text().trimmed();
    if (const QDate pasted = DateFromText(text); pasted.isValid()) {
        m_typing.Begin(pasted);
        ShowTyped();
        return;
    }
    if (FinishTyping())
        m_typing.Refuse(u"\"%1\" is not a date."_s.arg(text.left(LongestTextNamed)));
    emit NoticeChanged();
}

void clsDatePicker::Copy() const
{
    QApplication::clipboard()->setText(text());
}

void clsDatePicker::OpenCalendar()
{
    // The field opens it only for a press on its arrow.
    QStyleOptionComboBox option;
    option.initFrom(this);
    const QPointF arrow
        = style()
              ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, this)
              .center();
    QMouseEvent press(QEvent::MouseButtonPress, arrow, mapToGlobal(arrow), Qt::LeftButton,
        Qt::LeftButton, Qt::NoModifier);
    mousePressEvent(&press);
}

void clsDatePicker::CalendarShown()
{
    m_inCalendar = true;
    m_dateBefore = date();
    calendarWidget()->setDateEditEnabled(true);
}

void clsDatePicker::CalendarHidden()
{
    // A day typed in it is gone to only a moment later, when the field may hold another date.
    calendarWidget()->setDateEditEnabled(false);
    // The arrow keys have moved the field's date along. It is chosen, if it is, after the calendar
    // has closed.
    setDate(m_dateBefore);
    m_inCalendar = false;
}

void clsDatePicker::Choose(QDate date)
{
    setDate(date);
    emit Click();
}

bool clsDatePicker::event(QEvent *event)
{
    if (event->type() != QEvent::InputMethod)
        return QDateEdit::event(event);
    // An input method's text is typed like any other, not inserted into the one that is shown.
    for (const QChar character : static_cast<QInputMethodEvent *>(event)->commitString())
        TypeCharacter(character);
    return true;
}

bool clsDatePicker::focusNextPrevChild(bool next)
{
    return QWidget::focusNextPrevChild(next);
}

void clsDatePicker::focusInEvent(QFocusEvent *event)
{
    // Which part is selected depends on how the focus came, and the window knows that.
    const Section part = currentSection();
    QDateEdit::focusInEvent(event);
    setSelectedSection(part);
}

void clsDatePicker::keyPressEvent(QKeyEvent *event)
{
    if (OpensCalendar(*event))
        return OpenCalendar();
    if (event->matches(QKeySequence::Paste))
        return Paste();
    if (event->matches(QKeySequence::Copy))
        return Copy();
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
        if (FinishTyping())
            QDateEdit::keyPressEvent(event);
        else
            emit NoticeChanged();
        return;
    case Qt::Key_Left:
        return MoveTo(currentSectionIndex() - 1);
    case Qt::Key_Right:
        return MoveTo(currentSectionIndex() + 1);
    case Qt::Key_Home:
        return MoveTo(0);
    case Qt::Key_End:
        return MoveTo(sectionCount() - 1);
    case Qt::Key_Backspace:
    case Qt::Key_Delete:
        m_typedKeys = 0;
        if (Typing().TakeBack())
            ShowTyped();
        return;
    default:
        break;
    }
    if (TypesCharacter(*event))
        TypeCharacter(event->text().at(0));
    else
        event->ignore();
}

bool clsDatePicker::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == calendarWidget() && event->type() == QEvent::Show)
        CalendarShown();
    else if (watched == calendarWidget() && event->type() == QEvent::Hide)
        CalendarHidden();
    if (watched != lineEdit())
        return QDateEdit::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        // A caret between two digits would say that they can be edited one by one.
        const auto *press = static_cast<QMouseEvent *>(event);
        if (press->button() == Qt::LeftButton)
            MoveTo(lineEdit()->cursorPositionAt(press->position().toPoint()) / CharactersOfPart);
        return true;
    }
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseMove:
        return true;
    default:
        return QDateEdit::eventFilter(watched, event);
    }
}

void clsDatePicker::mousePressEvent(QMouseEvent *event)
{
    m_typedKeys = 0;
    if (FinishTyping())
        QDateEdit::mousePressEvent(event);
    else
        emit NoticeChanged();
}

void clsDatePicker::contextMenuEvent(QContextMenuEvent *event)
{
    // The line edit's own commands would edit the text, not the date.
    QMenu menu(this);
    menu.addAction(u"&Copy"_s, this, &clsDatePicker::Copy);
    menu.addAction(u"&Paste"_s, this, &clsDatePicker::Paste)
        ->setEnabled(!QApplication::clipboard()->text().isEmpty());
    menu.exec(event->globalPos());
}

QString clsDatePicker::textFromDateTime(const QDateTime &dateTime) const
{
    // Parts that are no date yet are shown too, over the date that holds meanwhile.
    return dateTime.date() == m_typing.Date() ? m_typing.Text()
                                              : QDateEdit::textFromDateTime(dateTime);
}

QDateTime clsDatePicker::dateTimeFromText(const QString &text) const
{
    Q_UNUSED(text)
    return dateTime();
}

QValidator::State clsDatePicker::validate(QString &text, int &position) const
{
    Q_UNUSED(position)
    // The text shows the date and is never read back.
    return text == textFromDateTime(dateTime()) ? QValidator::Acceptable : QValidator::Invalid;
}
