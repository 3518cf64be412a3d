#include "sync/clsSyncDialog.h"

#include "platform/clsRunTimeError.h"

clsSyncDialog::clsSyncDialog(clsMessageBox &messages, QWidget *parent)
    : QDialog(parent)
    , m_messages(messages)
{
}

void clsSyncDialog::Handle(const std::function<void()> &action)
{
    try {
        action();
    } catch (const clsRunTimeError &error) {
        Render();
        m_messages.Tell(error.Message());
    }
    Render();
}

void clsSyncDialog::DrawPanels(
    clsStatusBar &bar, const std::array<QString, clsStatusBar::Panels> &texts)
{
    int panel = 1;
    for (const QString &text : texts)
        bar.SetPanelText(panel++, text);
}
