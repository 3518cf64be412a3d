// What a screen reader finds in every window: a name and a role for each control, and in a grid the
// heading and the text of each cell.

#include "tests/windows/EveryWindow.h"

#include <QAccessible>
#include <QMessageBox>

#include <algorithm>
#include <set>

using namespace Qt::StringLiterals;

namespace {

class Access : public EveryWindow
{
};

/// Calls `visit` with everything that a screen reader finds in there, cells of grids aside.
void Walk(QAccessibleInterface &spoken, const std::function<void(QAccessibleInterface &)> &visit)
{
    visit(spoken);
    if (spoken.tableInterface() != nullptr)
        return;
    for (int i = 0; i < spoken.childCount(); ++i) {
        if (QAccessibleInterface *child = spoken.child(i))
            Walk(*child, visit);
    }
}

/// How a failed check names what it is about.
std::string NameOf(const QWidget &widget)
{
    return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString();
}

bool TakesKeys(const QWidget &widget)
{
    return widget.focusPolicy() != Qt::NoFocus || qobject_cast<const QAbstractButton *>(&widget);
}

bool HasLetters(const QString &text)
{
    return std::any_of(text.begin(), text.end(), [](QChar letter) { return letter.isLetter(); });
}

/// One that is not there ends the test.
QAccessibleInterface &There(QAccessibleInterface *spoken)
{
    if (spoken == nullptr)
        throw std::runtime_error("a screen reader finds nothing there");
    return *spoken;
}

QAccessibleInterface &SpokenOf(QWidget &widget)
{
    return There(QAccessible::queryAccessibleInterface(&widget));
}

QAccessibleTableInterface &TableOf(QWidget &grid)
{
    QAccessibleTableInterface *table = SpokenOf(grid).tableInterface();
    if (table == nullptr)
        throw std::runtime_error("no table for a screen reader");
    return *table;
}

QAccessibleInterface &CellOf(QWidget &grid, int row, int column)
{
    return There(TableOf(grid).cellAt(row, column));
}

QAccessibleInterface &HeadingOf(QWidget &grid, int column)
{
    const QAccessibleTableCellInterface *cell = CellOf(grid, 0, column).tableCellInterface();
    QAccessibleInterface &heading
        = There(cell == nullptr ? nullptr : cell->columnHeaderCells().value(0));
    // The toolkit makes a new one for each who asks, and forgets it unless it is registered.
    QAccessible::registerAccessibleInterface(&heading);
    return heading;
}

} // namespace

TEST_F(Access, EveryControlHasANameAndARole)
{
    const std::set<QAccessible::Role> saysNothing = {QAccessible::NoRole, QAccessible::Client,
        QAccessible::Pane, QAccessible::Window, QAccessible::Border};
    InEvery([&](const std::string &name, QWidget &window) {
        int controls = 0;
        QAccessibleInterface *root = QAccessible::queryAccessibleInterface(&window);
        ASSERT_NE(root, nullptr) << name;
        EXPECT_FALSE(root->text(QAccessible::Name).isEmpty()) << name << ": the window itself";
        Walk(*root, [&](QAccessibleInterface &spoken) {
            const auto *widget = qobject_cast<const QWidget *>(spoken.object());
            if (widget == nullptr || widget->isWindow() || !widget->isVisible()
                || !TakesKeys(*widget))
                return;
            ++controls;
            EXPECT_TRUE(HasLetters(spoken.text(QAccessible::Name)))
                << name << ": " << NameOf(*widget);
            EXPECT_FALSE(saysNothing.contains(spoken.role()))
                << name << ": " << NameOf(*widget) << " has role " << spoken.role();
        });
        EXPECT_GE(controls, 1) << name;
    });
}

TEST_F(Access, EveryControlOfAWindowIsFoundByAScreenReader)
{
    InEvery([&](const std::string &name, QWidget &window) {
        std::set<const QObject *> found;
        Walk(*QAccessible::queryAccessibleInterface(&window),
            [&](QAccessibleInterface &spoken) { found.insert(spoken.object()); });
        for (const QWidget *control : FocusChain(window))
            EXPECT_TRUE(found.contains(control)) << name << ": " << NameOf(*control);
    });
}

TEST_F(Access, AFieldIsNamedAsItsCompanyNamesIt)
{
    Company.Options.Customer_Term = u"Clients & friends"_s;
    Start();
    const auto nameOf = [this](const char *control) {
        return QAccessible::queryAccessibleInterface(&Any(control))->text(QAccessible::Name);
    };
    EXPECT_EQ(nameOf("txtCustomer"), u"Clients & friends"_s);
    EXPECT_EQ(nameOf("cmdCustomer"), u"Look up Clients & friends"_s);
    EXPECT_EQ(nameOf("txtHours"), u"Hours"_s);
    ClickRow(2);
    EXPECT_EQ(nameOf("txtHours"), u"Units"_s);
}

TEST_F(Access, ACellOfTheListIsReadWithItsHeading)
{
    Start();
    EXPECT_EQ(SpokenOf(Grid()).role(), QAccessible::Table);
    EXPECT_EQ(TableOf(Grid()).rowCount(), 2);
    const auto headingAndText = [this](int row, int column) {
        return HeadingOf(Grid(), column).text(QAccessible::Name) + u": "_s
            + CellOf(Grid(), row, column).text(QAccessible::Name);
    };
    EXPECT_EQ(headingAndText(0, 2), u"Date: 03/09/2026"_s);
    EXPECT_EQ(headingAndText(1, 6), u"T/E: E"_s);
    EXPECT_EQ(headingAndText(1, 7), u"Hours/Units: 3.00"_s);
    EXPECT_EQ(CellOf(Grid(), 0, 2).role(), QAccessible::Cell);
    EXPECT_TRUE(CellOf(Grid(), 0, 0).state().invisible) << "a hidden column is not read";
}

TEST_F(Access, ASortedHeadingSaysSo)
{
    Start();
    const auto heading = [this] { return HeadingOf(Grid(), 2).text(QAccessible::Description); };
    EXPECT_EQ(heading(), QString());
    ClickHeader(2);
    EXPECT_EQ(heading(), u"sorted, ascending"_s);
    ClickHeader(2);
    EXPECT_EQ(heading(), u"sorted, descending"_s);
    ClickHeader(7);
    EXPECT_EQ(heading(), QString());
}

TEST_F(Access, TheListIsSortedFromTheKeyboard)
{
    Start();
    GoTo("msgEntryList");
    Press(Qt::Key_6, Qt::ControlModifier); // the hours: date, three codes and T/E stand before
    EXPECT_EQ(HeadingOf(Grid(), 7).text(QAccessible::Description), u"sorted, ascending"_s);
    EXPECT_EQ(Column(7), QStringList({u"2.00"_s, u"3.00"_s}));
    Press(Qt::Key_6, Qt::ControlModifier);
    EXPECT_EQ(Column(7), QStringList({u"3.00"_s, u"2.00"_s}));
    EXPECT_EQ(Focused(), u"msgEntryList"_s);
    Press(Qt::Key_9, Qt::ControlModifier); // there is no ninth column
    EXPECT_EQ(Column(7), QStringList({u"3.00"_s, u"2.00"_s}));
}
