#include "platform/clsStatusBar.h"

#include "platform/DataLabel.h"

#include <QAccessible>

using namespace Qt::StringLiterals;

clsStatusBar::clsStatusBar(QWidget *parent)
    : QStatusBar(parent)
{
    for (int i = 0; i < Panels; ++i) {
        auto *panel = new QLabel(this);
        panel->setObjectName(u"Panel"_s + QString::number(i + 1));
        panel->setTextFormat(Qt::PlainText);
        panel->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
        panel->setContentsMargins(4, 0, 4, 0);
        addWidget(panel, i == 0 ? 2 : 1);
        m_panels.at(static_cast<size_t>(i)) = panel;
    }
}

void clsStatusBar::SetPanelText(int panel, const QString &text)
{
    ShowData(*m_panels.at(static_cast<size_t>(panel - 1)), text);
}

void clsStatusBar::ShowNotice(const QString &text)
{
    if (text == currentMessage())
        return;
    showMessage(text.left(MostCharactersShown));
    if (text.isEmpty())
        return;
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
