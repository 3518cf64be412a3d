#include "platform/clsStatusBar.h"

#include "platform/DataLabel.h"
#include "platform/PlainToolTip.h"
#include "platform/ReadableColours.h"

#include <QAccessible>
#include <QPainter>
#include <QStyleOption>

using namespace Qt::StringLiterals;

clsStatusBar::clsStatusBar(QWidget *parent)
    : QStatusBar(parent)
{
    for (int i = 0; i < Panels; ++i) {
        auto *panel = new QLabel(this);
        panel->setObjectName(u"Panel"_s + QString::number(i + 1));
        panel->setTextFormat(Qt::PlainText);
        panel->setContentsMargins(4, 0, 4, 0);
        addWidget(panel, i == 0 ? 2 : 1);
        m_panels.at(static_cast<size_t>(i)) = panel;
    }
}

void clsStatusBar::SetPanelText(int panel, const QString &text)
{
    ShowData(*m_panels.at(static_cast<size_t>(panel - 1)), text);
}

void clsStatusBar::paintEvent(QPaintEvent *event)
{
    if (!currentMessage().isEmpty()) {
        QStatusBar::paintEvent(event);
        return;
    }
    // A frame of its own around each panel would make two lines between any two of them.
    QPainter painter(this);
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_PanelStatusBar, &option, &painter, this);
    painter.setPen(LineColour(palette()));
    for (const QLabel *panel : m_panels) {
        if (panel != m_panels.front())
            painter.drawLine(
                panel->x() - 3, panel->y(), panel->x() - 3, panel->geometry().bottom());
    }
}

void clsStatusBar::ShowNotice(const QString &text)
{
    if (text == currentMessage())
        return;
    showMessage(text.left(MostCharactersShown));
    setToolTip(PlainToolTip(text)); // in a narrow window it is cut off
    if (text.isEmpty())
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
