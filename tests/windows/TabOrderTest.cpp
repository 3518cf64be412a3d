// Tab goes through every window as one reads it, and Shift+Tab the other way.

#include "tests/windows/EveryWindow.h"

#include <QAbstractButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class TabOrder : public EveryWindow
{
};

/// The order in which a user reads each window: what Shift+Tab goes through backwards. Of buttons
/// that choose one of several, Tab stops at the chosen one.
const QMap<std::string, QStringList> &ReadingOrders()
{
    static const QMap<std::string, QStringList> orders = {
        // Without a customer there is no project.
        {"frmEntryList",
            {u"cboCompany"_s, u"msgEntryList"_s, u"dtpDate"_s, u"txtCustomer"_s, u"txtActivity"_s,
                u"cboBStatus"_s, u"cboBOption"_s, u"txtMultiplierCode"_s, u"txtHours"_s,
                u"txtRate"_s, u"chkApproved"_s, u"chkOnHold"_s, u"txtDescription"_s, u"cmdOK"_s,
                u"cmdUndo"_s, u"cmdDel"_s, u"cmdHrsSumm"_s, u"cmdTransFilter"_s, u"cmdSync"_s,
                u"cmdHelp"_s}},
        // A stored entry keeps its company.
        {"frmEntryList with a time entry",
            {u"msgEntryList"_s, u"dtpDate"_s, u"txtCustomer"_s, u"txtProject"_s, u"txtActivity"_s,
                u"cboBStatus"_s, u"cboBOption"_s, u"txtMultiplierCode"_s, u"txtHours"_s,
                u"txtRate"_s, u"chkApproved"_s, u"chkOnHold"_s, u"txtDescription"_s, u"cmdOK"_s,
                u"cmdUndo"_s, u"cmdDel"_s, u"cmdHrsSumm"_s, u"cmdTransFilter"_s, u"cmdSync"_s,
                u"cmdHelp"_s}},
        {"frmEntryList with an expense",
            {u"msgEntryList"_s, u"dtpDate"_s, u"txtCustomer"_s, u"txtProject"_s, u"txtActivity"_s,
                u"cboBStatus"_s, u"txtHours"_s, u"txtRate"_s, u"chkReimburse"_s, u"chkApproved"_s,
                u"chkOnHold"_s, u"txtDescription"_s, u"cmdOK"_s, u"cmdUndo"_s, u"cmdDel"_s,
                u"cmdHrsSumm"_s, u"cmdTransFilter"_s, u"cmdSync"_s, u"cmdHelp"_s}},
        // Enter in the text leads to what it has found, and there chooses it.
        {"frmLookup",
            {u"txtLookup"_s, u"msgLookup"_s, u"cboLookupBy"_s, u"cmdSelect"_s, u"cmdCancel"_s,
                u"cmdHelp"_s}},
        {"frmTransFilter",
            {u"txtCustomer"_s, u"txtProject"_s, u"txtActivity"_s, u"cmdOK"_s, u"cmdCancel"_s,
                u"cmdClear"_s, u"cmdHelp"_s}},
        {"frmHrsSumm",
            {u"msgHrsSumm"_s, u"txtBillable"_s, u"txtNoCharge"_s, u"txtDoNotBill"_s,
                u"txtTotHours"_s, u"txtAmount"_s, u"cmdOK"_s, u"cmdHelp"_s}},
        // MAS 90 has no host and no port.
        {"frmConfigure",
            {u"optMas90_0"_s, u"txtMas90Path"_s, u"cmdBrowse"_s, u"cmdAccept"_s, u"cmdCancel"_s,
                u"cmdHelp"_s}},
        {"frmSyncOptions", {u"optSyncOption0"_s, u"cmdAccept"_s, u"cmdCancel"_s, u"cmdHelp"_s}},
        {"the message: Invalid Hours.", {u"OK"_s}},
        {"the message: Delete this Entry?", {u"&Yes"_s, u"&No"_s}},
        {"the message: Do you want to save changes?", {u"&Yes"_s, u"&No"_s, u"Cancel"_s}},
        // There is no page to go back to.
        {"frmHelp", {u"txtSearch"_s, u"treContents"_s, u"brwPage"_s}},
        {"frmHelp after a second page",
            {u"cmdBack"_s, u"txtSearch"_s, u"treContents"_s, u"brwPage"_s}},
    };
    return orders;
}

QString Named(const QWidget &control)
{
    if (!control.objectName().isEmpty())
        return control.objectName();
    const auto *button = qobject_cast<const QAbstractButton *>(&control);
    return button != nullptr ? button->text()
                             : QString::fromLatin1(control.metaObject()->className());
}

/// The control with the keys; null where a message box has just opened.
QWidget *Focused(const QWidget &window)
{
    QWidget *control = window.focusWidget();
    while (control != nullptr && control->focusProxy() != nullptr)
        control = control->focusProxy();
    return control;
}

/// Where the key leads from control to control, once around. A page stops at each of its links.
QStringList Walked(QWidget &window, Qt::Key key)
{
    const auto press = [&] {
        QWidget *control = Focused(window);
        QTest::keyClick(control != nullptr ? control : &window, key,
            key == Qt::Key_Backtab ? Qt::ShiftModifier : Qt::NoModifier);
        LetEventsRun();
    };
    if (Focused(window) == nullptr)
        press();
    QStringList names;
    const QWidget *const first = Focused(window);
    const QWidget *last = nullptr;
    constexpr int mostPresses = 80;
    for (int i = 0; i < mostPresses; ++i) {
        const QWidget *here = Focused(window);
        if (here == nullptr)
            throw std::runtime_error("no control takes the keys");
        if (here == first && last != nullptr && last != first)
            break;
        if (here != last)
            names.append(Named(*here));
        last = here;
        press();
    }
    return names;
}

/// The same circle, begun at its first name in the order of letters.
QStringList Turned(QStringList circle)
{
    if (circle.isEmpty())
        return circle;
    std::rotate(circle.begin(), std::min_element(circle.begin(), circle.end()), circle.end());
    return circle;
}

/// What Tab passes over: with the hours known, a time entry needs only its description.
QStringList WithoutShortCuts(const QStringList &order)
{
    const auto withoutBetween = [](QStringList names, const QString &from, const QString &to) {
        const qsizetype first = names.indexOf(from) + 1;
        const qsizetype last = names.indexOf(to);
        if (first > 0 && last > first)
            names.erase(names.begin() + first, names.begin() + last);
        return names;
    };
    return withoutBetween(
        withoutBetween(order, u"txtActivity"_s, u"txtHours"_s), u"txtHours"_s, u"txtDescription"_s);
}

} // namespace

TEST_F(TabOrder, TabFollowsTheReadingOrder)
{
    InEvery([](const std::string &name, QWidget &window) {
        EXPECT_EQ(Turned(Walked(window, Qt::Key_Tab)),
            Turned(WithoutShortCuts(ReadingOrders().value(name))))
            << name;
    });
}

TEST_F(TabOrder, ShiftTabIsTheReverseAndPassesNothingOver)
{
    InEvery([](const std::string &name, QWidget &window) {
        QStringList back = Walked(window, Qt::Key_Backtab);
        std::reverse(back.begin(), back.end());
        EXPECT_EQ(Turned(back), Turned(ReadingOrders().value(name))) << name;
    });
}
