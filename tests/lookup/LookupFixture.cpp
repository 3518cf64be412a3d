#include "tests/lookup/LookupFixture.h"

#include "store/FieldText.h"

#include <QAbstractItemView>
#include <QScopeGuard>
#include <QWheelEvent>

#include <stdexcept>

using namespace Qt::StringLiterals;

std::vector<CustomerRecord> NumberedCustomers(int count)
{
    std::vector<CustomerRecord> customers;
    for (int i = 1; i <= count; ++i)
        customers.push_back(SampleCustomer(
            u"C%1"_s.arg(i, 3, 10, QChar(u'0')), u"Name %1"_s.arg(1000 - i, 3, 10, QChar(u'0'))));
    return customers;
}

void LookupFixture::Start()
{
    Folder = std::make_unique<SampleFolder>(std::vector<SampleCompany>{Company});
    Folder->OpenAll();
    Folder->Tables.Options.LoadOptions();
    Folder->Tables.Employee.LoadEmployee();
    Session.CurrentCompanyCode = Company.Code;
    Entry.Date = WallClock(QDate(2026, 3, 9));
    Module = std::make_unique<modLookup>(Folder->Tables, Session, Entry, Filter, Lookup, Messages);
    Module->EndProgram = [this] { ++ProgramEnds; };
}

void LookupFixture::InWindow(QWidget &window, const std::function<void()> &steps)
{
    QWidget *const outer = m_window;
    const auto restored = qScopeGuard([&] { m_window = outer; });
    m_window = &window;
    LetEventsRun();
    steps();
}

void LookupFixture::LookUp(const QString &kind, const std::function<void()> &steps)
{
    Lookup.LookupKind = kind;
    Lookup.LookupPending = true;
    frmLookup form(*Module, Messages, Keys);
    WithModal([&] { form.ShowModal(); }, [&](QWidget &window) { InWindow(window, steps); });
}

void LookupFixture::LookUpFromFilter(const QString &kind, const std::function<void()> &steps)
{
    Lookup.LookupFromFilter = true;
    LookUp(kind, steps);
    Lookup.LookupFromFilter = false;
}

QWidget &LookupFixture::Window()
{
    if (m_window == nullptr)
        throw std::runtime_error("no window is open");
    return *m_window;
}

QString LookupFixture::Focused()
{
    const QWidget *focused = Window().focusWidget();
    return focused == nullptr ? QString() : focused->objectName();
}

QString LookupFixture::Panel(int number)
{
    return Control<QLabel>(Window(), qPrintable(u"Panel%1"_s.arg(number))).text();
}

void LookupFixture::Type(const char *box, const QString &text)
{
    Box(box).setFocus(Qt::OtherFocusReason);
    Box(box).selectAll();
    QTest::keyClick(&Box(box), Qt::Key_Delete);
    // Not every letter has a key; each arrives with its text all the same.
    for (const QChar letter : text)
        QTest::sendKeyEvent(QTest::Click, &Box(box), Qt::Key_unknown, letter, Qt::NoModifier);
    LetEventsRun();
}

void LookupFixture::Press(const char *control, Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    Control<QWidget>(Window(), control).setFocus(Qt::OtherFocusReason);
    QTest::keyClick(Window().focusWidget(), key, modifiers);
    LetEventsRun();
}

void LookupFixture::Press(Qt::Key key)
{
    QTest::keyClick(Window().focusWidget(), key);
    LetEventsRun();
}

void LookupFixture::ClickButton(const char *name)
{
    QTest::mouseClick(&Control<QPushButton>(Window(), name), Qt::LeftButton);
    LetEventsRun();
}

static QPoint RowCentre(clsGrid &grid, int row)
{
    return grid.visualRect(grid.model()->index(row - 1, 1)).center();
}

void LookupFixture::ClickRow(int row)
{
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, RowCentre(Grid(), row));
    LetEventsRun();
}

void LookupFixture::DoubleClickRow(int row)
{
    const QPoint at = RowCentre(Grid(), row);
    QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, at);
    DoubleClick(*Grid().viewport(), at);
    LetEventsRun();
}

void LookupFixture::DoubleClick(QWidget &widget, const QPoint &at, Qt::MouseButton button)
{
    QTest::mouseDClick(&widget, button, {}, at);
    QTest::mouseRelease(&widget, button, {}, at);
}

void LookupFixture::Wheel(int notches)
{
    const QPointF at(20, 20);
    QWheelEvent event(at, Grid().viewport()->mapToGlobal(at), {}, {0, -120 * notches}, Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(Grid().viewport(), &event);
    LetEventsRun();
}

void LookupFixture::ChooseBy(const QString &text)
{
    // Otherwise the list would take the pick for the end of the click which dropped it.
    const int interval = QApplication::doubleClickInterval();
    const auto restored = qScopeGuard([&] { QApplication::setDoubleClickInterval(interval); });
    QApplication::setDoubleClickInterval(0);
    QTest::mouseClick(&By(), Qt::LeftButton);
    LetEventsRun();
    QAbstractItemView &list = *By().view();
    const QModelIndex item = list.model()->index(By().findText(text), 0);
    QTest::mouseMove(list.viewport(), list.visualRect(item).center());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(item).center());
    LetEventsRun();
}

QStringList LookupFixture::Headers()
{
    QStringList texts;
    for (int column = 0; column < Grid().Cols(); ++column)
        texts.append(Grid().TextMatrix(0, column));
    return texts;
}

QStringList LookupFixture::Column(int column)
{
    QStringList texts;
    for (int row = 1; row < Grid().Rows(); ++row)
        texts.append(Grid().TextMatrix(row, column));
    return texts;
}

QString LookupFixture::SelectedCode()
{
    const QModelIndexList rows = Grid().selectionModel()->selectedRows();
    EXPECT_EQ(rows.size(), 1);
    EXPECT_TRUE(rows.isEmpty() || rows.front().row() + 1 == Grid().Row());
    return rows.isEmpty() ? QString() : Grid().TextMatrix(rows.front().row() + 1, 1);
}

void LookupFixture::ExpectOneRowAndItsRecord()
{
    const QModelIndexList rows = Grid().selectionModel()->selectedRows();
    ASSERT_EQ(rows.size(), 1);
    EXPECT_EQ(rows.front().row() + 1, Grid().Row());
    EXPECT_EQ(Grid().TextMatrix(Grid().Row(), 0), QString::number(Module->LookupRecordIndex));
}
