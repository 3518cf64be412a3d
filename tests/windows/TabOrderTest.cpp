// Tab goes through every window as one reads it, and Shift+Tab the other way.

#include "tests/windows/EveryWindow.h"

#include <QDialogButtonBox>
#include <QMessageBox>
#include <QRadioButton>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

class TabOrder : public EveryWindow
{
};

/// The windows whose fields stand in groups side by side, or in rows of their own: each group is
/// read as a whole, and the groups in this order. What is not named here stands alone in a window
/// that is read from the top to the bottom.
const QMap<std::string, QList<QStringList>> &Groups()
{
    static const QMap<std::string, QList<QStringList>> groups = {
        {"frmEntryList",
            {{u"cboCompany"_s, u"txtUser"_s}, {u"msgEntryList"_s},
                {u"dtpDate"_s, u"txtCustomer"_s, u"txtProject"_s, u"txtActivity"_s},
                {u"cboBStatus"_s, u"cboBOption"_s, u"txtMultiplierCode"_s},
                {u"txtHours"_s, u"txtRate"_s, u"txtAmount"_s},
                {u"chkReimburse"_s, u"chkApproved"_s, u"chkOnHold"_s}, {u"txtDescription"_s},
                {u"cmdOK"_s, u"cmdUndo"_s, u"cmdDel"_s, u"cmdHrsSumm"_s, u"cmdTransFilter"_s,
                    u"cmdSync"_s, u"cmdHelp"_s}}},
        // Enter in the text leads to what it has found, and there chooses it.
        {"frmLookup",
            {{u"txtLookup"_s}, {u"msgLookup"_s}, {u"cboLookupBy"_s},
                {u"cmdSelect"_s, u"cmdCancel"_s, u"cmdHelp"_s}}},
    };
    return groups;
}

QString Named(const QWidget &control)
{
    if (!control.objectName().isEmpty())
        return control.objectName();
    const auto *button = qobject_cast<const QAbstractButton *>(&control);
    return button != nullptr ? button->text()
                             : QString::fromLatin1(control.metaObject()->className());
}

/// Above what, and in one line left of what. Controls stand in one line when their middles are less
/// than half a control apart.
void SortAsRead(QList<QWidget *> &controls, const QWidget &window)
{
    const auto at
        = [&](const QWidget *control) { return control->mapTo(&window, control->rect().center()); };
    std::sort(controls.begin(), controls.end(), [&](const QWidget *one, const QWidget *other) {
        const QPoint a = at(one);
        const QPoint b = at(other);
        const int line = std::min(one->height(), other->height()) / 2;
        return std::abs(a.y() - b.y()) > line ? a.y() < b.y() : a.x() < b.x();
    });
}

QStringList ReadingOrder(const std::string &name, QWidget &window)
{
    QList<QWidget *> rest = FocusChain(window);
    // Of buttons that choose one of several, Tab stops at the chosen one.
    rest.removeIf([](const QWidget *control) {
        const auto *option = qobject_cast<const QRadioButton *>(control);
        return option != nullptr && !option->isChecked();
    });
    QStringList order;
    const auto take = [&](QList<QWidget *> group) {
        SortAsRead(group, window);
        for (const QWidget *control : group)
            order.append(Named(*control));
    };
    const std::string form = name.substr(0, name.find(' '));
    for (const QStringList &names : Groups().value(form)) {
        QList<QWidget *> group;
        for (QWidget *control : std::as_const(rest)) {
            if (names.contains(control->objectName()))
                group.append(control);
        }
        rest.removeIf([&](QWidget *control) { return group.contains(control); });
        take(group);
    }
    take(rest);
    return order;
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
            Turned(WithoutShortCuts(ReadingOrder(name, window))))
            << name;
    });
}

TEST_F(TabOrder, ShiftTabIsTheReverseAndPassesNothingOver)
{
    InEvery([](const std::string &name, QWidget &window) {
        QStringList back = Walked(window, Qt::Key_Backtab);
        std::reverse(back.begin(), back.end());
        EXPECT_EQ(Turned(back), Turned(ReadingOrder(name, window))) << name;
    });
}
