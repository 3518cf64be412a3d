#include "tests/windows/EveryWindow.h"

#include "help/frmHelp.h"
#include "platform/clsWindowMessageBox.h"
#include "tests/support/Modal.h"

#include <QAction>

using namespace Qt::StringLiterals;

EveryWindow::EveryWindow()
{
    Company.Options.Billing_Option_Switch = u"Y"_s;
    Company.Options.On_Hold_In_Use = u"Y"_s;
    Company.Options.Mgmt_Approval_In_Use = u"Y"_s;
    Company.Employee.Mgmt_Approver = u"Y"_s;
    Company.Employee.Approval = u"Y"_s;
    Company.Employee.Rate_Permission = u"4"_s;
    const QDate monday(2026, 3, 9);
    Company.Activities.push_back(SampleExpense(u"MEALS"_s, u"Meals"_s, Currency::FromWhole(1)));
    EntryRecord time
        = SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, monday, Currency::FromWhole(2));
    time.Billing_Option = u"4"_s;
    Company.Entries = std::vector{
        time, SampleEntry(u"0100"_s, u"AUDIT"_s, u"MEALS"_s, monday, Currency::FromWhole(3))};
}

void EveryWindow::InEvery(const Look &look)
{
    Start();
    InMainWindow(look);
    InDialogs(look);
    InMessages(look);
    InHelp(look);
}

void EveryWindow::InMainWindow(const Look &look)
{
    look("frmEntryList", Window());
    ClickRow(1);
    look("frmEntryList with a time entry", Window());
    ClickRow(2);
    look("frmEntryList with an expense", Window());
}

void EveryWindow::InDialogs(const Look &look)
{
    const auto in = [&](const char *name, const std::function<void()> &open) {
        WithModal(open, [&](QWidget &dialog) {
            EXPECT_EQ(dialog.objectName(), QString::fromLatin1(name));
            // Without a customer the filter's project passes on, whichever key led there.
            if (dialog.objectName() == u"frmTransFilter"_s)
                QTest::keyClicks(&Control<QLineEdit>(dialog, "txtCustomer"), u"0100\t"_s);
            LetEventsRun();
            look(name, dialog);
            QTest::keyClick(&dialog, Qt::Key_Escape);
        });
        Window().activateWindow();
        EXPECT_TRUE(WaitUntilActive(Window()));
        LetEventsRun();
    };
    in("frmLookup", [this] { ClickButton("cmdCustomer"); });
    in("frmTransFilter", [this] { ClickButton("cmdTransFilter"); });
    in("frmHrsSumm", [this] { ClickButton("cmdHrsSumm"); });
    in("frmConfigure", [this] { Control<QAction>(Window(), "mnuConfigure").trigger(); });
    in("frmSyncOptions", [this] { Control<QAction>(Window(), "mnuSync").trigger(); });
}

void EveryWindow::InMessages(const Look &look)
{
    const auto in = [&](const QString &text, MessageIcon icon, MessageButtons buttons) {
        clsWindowMessageBox messages;
        messages.SetParent(&Window());
        WithModal([&] { messages.Ask(text, icon, buttons, MessageAnswer::No); },
            [&](QWidget &box) {
                look("the message: " + text.toStdString(), box);
                QTest::keyClick(&box, Qt::Key_Escape);
            });
    };
    in(u"Invalid Hours."_s, MessageIcon::Exclamation, MessageButtons::OK);
    in(u"Delete this Entry?"_s, MessageIcon::Question, MessageButtons::YesNo);
    in(u"Do you want to save changes?"_s, MessageIcon::Question, MessageButtons::YesNoCancel);
}

void EveryWindow::InHelp(const Look &look)
{
    modHelp pages(QStringLiteral(WORKLOG_HELP_FILE));
    ASSERT_TRUE(pages.Load()) << "the help file is not built";
    frmHelp viewer(pages);
    ASSERT_TRUE(ShowActive(viewer));
    viewer.ShowPage(modHelp::FirstPage());
    LetEventsRun();
    look("frmHelp", viewer);
    viewer.ShowPage(u"filter"_s);
    LetEventsRun();
    look("frmHelp after a second page", viewer);
}

QList<QWidget *> FocusChain(QWidget &window)
{
    QList<QWidget *> chain;
    for (QWidget *control = window.nextInFocusChain(); control != &window;
         control = control->nextInFocusChain()) {
        const bool takesTab = (control->focusPolicy() & Qt::TabFocus) == Qt::TabFocus;
        if (takesTab && control->window() == &window && control->isVisible() && control->isEnabled()
            && control->focusProxy() == nullptr)
            chain.append(control);
    }
    return chain;
}
