#pragma once

#include "lookup/frmLookup.h"
#include "lookup/modLookup.h"
#include "platform/clsGrid.h"
#include "tests/support/Modal.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Windows.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <vector>

/// Customers C001, C002 and so on, named so that the order by name is the other way round.
std::vector<CustomerRecord> NumberedCustomers(int count);

/// Counts the F1 keys that arrive in the program.
class HelpKeys : public QObject
{
public:
    HelpKeys() { qApp->installEventFilter(this); }
    int Count = 0;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (!watched->isWidgetType() || event->type() != QEvent::KeyPress
            || static_cast<QKeyEvent *>(event)->key() != Qt::Key_F1)
            return false;
        ++Count;
        return true;
    }
};

/// The lookup over real databases, and a user's hands in its window. Keys that
/// the program sends to itself arrive as they do outside of tests.
class LookupFixture : public testing::Test
{
protected:
    void Start(); ///< builds the company's databases and opens them

    /// Opens the lookup of that kind as the entry window would, and runs the steps in it.
    void LookUp(const QString &kind, const std::function<void()> &steps);
    void LookUpFromFilter(const QString &kind, const std::function<void()> &steps);

    // The window that is open.
    QWidget &Window();
    clsGrid &Grid() { return Control<clsGrid>(Window(), "msgLookup"); }
    QScrollBar &Bar() { return Control<QScrollBar>(Window(), "scrLookup"); }
    QComboBox &By() { return Control<QComboBox>(Window(), "cboLookupBy"); }
    QLineEdit &Box(const char *name) { return Control<QLineEdit>(Window(), name); }
    QString Focused();
    QString Panel(int number);

    void Type(const char *box, const QString &text); ///< in place of what the box holds
    void Press(const char *control, Qt::Key key, Qt::KeyboardModifiers modifiers = {});
    void Press(Qt::Key key); ///< where the focus is
    void ClickButton(const char *name);
    void ClickRow(int row);
    void DoubleClickRow(int row);
    /// The second press and its release, which QTest leaves out.
    static void DoubleClick(
        QWidget &widget, const QPoint &at, Qt::MouseButton button = Qt::LeftButton);
    void Wheel(int notches); ///< over the grid; positive goes down
    void ChooseBy(const QString &text); ///< from the dropped list, with the mouse

    QStringList Headers();
    QStringList Column(int column);
    QString SelectedCode(); ///< of the one selected row; more or none is a failure
    /// One row is selected and the module's record is its.
    void ExpectOneRowAndItsRecord();

    SampleCompany Company;
    std::unique_ptr<SampleFolder> Folder;
    SessionState Session;
    EntryBeingEdited Entry;
    FilterState Filter;
    LookupState Lookup;
    clsRecordedMessages Messages;
    clsProgramKeys Keys;
    std::unique_ptr<modLookup> Module;
    int ProgramEnds = 0;

    /// Runs steps in a window that is open already or opens now.
    void InWindow(QWidget &window, const std::function<void()> &steps);

private:
    QWidget *m_window = nullptr;
};
