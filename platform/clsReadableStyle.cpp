#include "platform/clsReadableStyle.h"

#include "platform/MessagePictures.h"
#include "platform/ReadableColours.h"

#include <QAbstractScrollArea>
#include <QApplication>
#include <QEvent>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr qreal CornerRadius = 2;
constexpr int SpaceBelowTitle = 3; // of a group

/// Whether it has the keys at times; other frames only stand around something.
bool Scrolls(const QWidget *widget)
{
    return qobject_cast<const QAbstractScrollArea *>(widget) != nullptr;
}

void DrawLine(QPainter &painter, const QStyleOption &option, const QColor &colour, qreal width)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(colour, width));
    const qreal half = width / 2;
    painter.drawRoundedRect(
        QRectF(option.rect).adjusted(half, half, -half, -half), CornerRadius, CornerRadius);
    painter.restore();
}

void DrawCircle(QPainter &painter, const QStyleOption &option)
{
    if (!option.state.testFlag(QStyle::State_Enabled))
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(LineColour(option.palette));
    const QRectF around = option.rect;
    const qreal radius = std::min(around.width(), around.height()) / 2 - 1;
    painter.drawEllipse(around.center(), radius, radius);
    painter.restore();
}

/// Around something to type into, to choose from or to press.
void DrawFrame(QPainter &painter, const QStyleOption &option, bool framed)
{
    constexpr qreal focusWidth = 2;
    if (option.state.testFlag(QStyle::State_HasFocus))
        DrawLine(painter, option, option.palette.color(QPalette::Highlight), focusWidth);
    else if (framed && option.state.testFlag(QStyle::State_Enabled))
        DrawLine(painter, option, LineColour(option.palette), 1);
}

} // namespace

clsReadableStyle::clsReadableStyle()
    : QProxyStyle(u"fusion"_s)
{
}

void clsReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
    QPainter *painter, const QWidget *widget) const
{
    if (element == PE_FrameFocusRect) {
        DrawLine(*painter, *option, option->palette.color(QPalette::Highlight), 1);
        return;
    }
    if (element == PE_FrameGroupBox || (element == PE_Frame && !Scrolls(widget))) {
        QStyleOption frame = *option;
        if (element == PE_FrameGroupBox)
            frame.rect.setTop(frame.rect.top() + frame.fontMetrics.height() + SpaceBelowTitle);
        DrawLine(*painter, frame, FaintLineColour(option->palette, QPalette::Window), 1);
        return;
    }
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    switch (element) {
    case PE_Frame:
        if (Scrolls(widget))
            DrawFrame(*painter, *option, true);
        break;
    case PE_FrameLineEdit:
    case PE_IndicatorCheckBox:
        DrawFrame(*painter, *option, true);
        break;
    case PE_IndicatorRadioButton:
        DrawCircle(*painter, *option);
        break;
    case PE_PanelButtonCommand:
        DrawFrame(*painter, *option, false); // its text shows where a button is
        break;
    default:
        break;
    }
}

void clsReadableStyle::drawControl(ControlElement element, const QStyleOption *option,
    QPainter *painter, const QWidget *widget) const
{
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    const bool selected = item != nullptr && item->state.testFlag(State_Selected);
    if (element != CE_MenuBarItem || !selected || widget == nullptr || !widget->hasFocus()) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    // The keyboard's choice in a menu bar looks as it does with its menu open.
    QStyleOptionMenuItem open = *item;
    open.state |= State_Sunken;
    QProxyStyle::drawControl(element, &open, painter, widget);
}

void clsReadableStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
    QPainter *painter, const QWidget *widget) const
{
    const auto *list = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    if (control == CC_ComboBox && list != nullptr && !list->editable) {
        // A list is a field of its own background with a button at its end, not a button as a
        // whole.
        painter->fillRect(list->rect.adjusted(1, 1, -1, -1), list->palette.base());
        QStyleOptionComboBox field = *list;
        field.editable = true;
        QProxyStyle::drawComplexControl(control, &field, painter, widget);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
    if (control == CC_ComboBox || control == CC_SpinBox)
        DrawFrame(*painter, *option, true);
}

int clsReadableStyle::pixelMetric(
    PixelMetric metric, const QStyleOption *option, const QWidget *widget) const
{
    // A column's heading begins and ends where its cells do.
    if (metric == PM_HeaderMargin)
        return QProxyStyle::pixelMetric(PM_FocusFrameHMargin, option, widget) + 1;
    return QProxyStyle::pixelMetric(metric, option, widget);
}

int clsReadableStyle::styleHint(
    StyleHint hint, const QStyleOption *option, const QWidget *widget, QStyleHintReturn *data) const
{
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    case SH_Table_GridLineColor:
        if (option != nullptr)
            return static_cast<int>(FaintLineColour(option->palette, QPalette::Base).rgb());
        break;
    default:
        break;
    }
    return QProxyStyle::styleHint(hint, option, widget, data);
}

QIcon clsReadableStyle::standardIcon(
    StandardPixmap picture, const QStyleOption *option, const QWidget *widget) const
{
    const QIcon own = MessagePicture(picture);
    return own.isNull() ? QProxyStyle::standardIcon(picture, option, widget) : own;
}

void clsReadableStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    // Of lists and pages only the inside is drawn again when the focus comes or goes.
    if (Scrolls(widget))
        widget->installEventFilter(this);
}

void clsReadableStyle::unpolish(QWidget *widget)
{
    widget->removeEventFilter(this);
    QProxyStyle::unpolish(widget);
}

bool clsReadableStyle::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut)
        static_cast<QWidget *>(watched)->update();
    return QProxyStyle::eventFilter(watched, event);
}

void UseReadableLook()
{
    const QStyle *style = QApplication::style();
    if (qobject_cast<const clsReadableStyle *>(style) == nullptr && style->name() == "fusion"_L1)
        QApplication::setStyle(new clsReadableStyle); // the application's from now on
    const QPalette former = QApplication::palette();
    const QPalette readable = ReadableColours(former);
    if (readable.resolveMask() == 0)
        return;
    // Only what was put right is the program's own: all else follows the theme when it changes.
    QPalette all = readable.resolve(former);
    all.setResolveMask(readable.resolveMask() | former.resolveMask());
    QApplication::setPalette(all);
}
