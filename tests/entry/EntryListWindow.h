#pragma once

#include "entry/EntryColumn.h"
#include "tests/entry/EntryWindow.h"

#include <QMouseEvent>
#include <QScrollBar>

#include <functional>

/// Message boxes that let a test look at the window while one of them is open.
class clsWatchedMessages : public clsRecordedMessages
{
public:
    MessageAnswer Ask(const QString &text, MessageIcon icon, MessageButtons buttons,
        MessageAnswer preset) override
    {
        if (WhileOpen)
            WhileOpen();
        return clsRecordedMessages::Ask(text, icon, buttons, preset);
    }

    std::function<void()> WhileOpen;
};

/// The list of the main window with entries whose descriptions are "number 0", "number 1", ...
/// in stored order, and a mouse that can do more than click.
class EntryListWindow : public EntryWindow
{
protected:
    const QDate Monday = QDate(2026, 3, 9);

    void Add(const QString &activity, QDate date, const char *hours,
        const QString &customer = QStringLiteral("0100"),
        const QString &project = QStringLiteral("AUDIT"))
    {
        EntryRecord entry = SampleEntry(customer, project, activity, date,
            *CurrencyFromText(QString::fromLatin1(hours)), Currency::FromWhole(90));
        entry.Description = Number(static_cast<int>(Company.Entries->size()));
        Company.Entries->push_back(entry);
    }

    /// Time entries of one day with these hours.
    void AddHours(std::initializer_list<const char *> hours)
    {
        for (const char *text : hours)
            Add(QStringLiteral("CONS"), Monday, text);
    }

    void AddMany(int count)
    {
        for (int i = 0; i < count; ++i)
            Add(QStringLiteral("CONS"), Monday, "1");
    }

    void StartList()
    {
        std::vector<SampleCompany> companies = {Company};
        companies.insert(companies.end(), Others.begin(), Others.end());
        BuildSampleCompanies(Folder.path(), companies);
        Program = std::make_unique<clsProgram>(
            Folder.path(), ProgramServices{Watched, Keys, Process, Clock, Settings, Browser});
        Program->StartUp();
        ASSERT_TRUE(ShowActive(Window()));
        LetEventsRun();
    }

    static QString Number(int entry) { return QStringLiteral("number ") + QString::number(entry); }

    QPoint Cell(int row, int column = EntryColumn::Date)
    {
        return Grid().visualRect(Grid().model()->index(row - 1, column)).center();
    }

    void ClickCell(int row, Qt::MouseButton button, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::mouseClick(Grid().viewport(), button, modifiers, Cell(row));
        LetEventsRun();
    }

    /// Presses the left button at one place, moves it and releases it at another one.
    void Drag(const QPoint &from, const QPoint &to)
    {
        QWidget &viewport = *Grid().viewport();
        QTest::mousePress(&viewport, Qt::LeftButton, {}, from);
        for (const QPoint &at : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, at, viewport.mapToGlobal(at), Qt::NoButton,
                Qt::LeftButton, Qt::NoModifier);
            QApplication::sendEvent(&viewport, &move);
        }
        QTest::mouseRelease(&viewport, Qt::LeftButton, {}, to);
        LetEventsRun();
    }

    void PressInList(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        GoTo("msgEntryList");
        Press(key, modifiers);
    }

    /// The highlighted row; 0 when there is none.
    int Highlighted()
    {
        const QModelIndexList rows = Grid().selectionModel()->selectedRows();
        EXPECT_LE(rows.size(), 1);
        return rows.isEmpty() ? 0 : rows.front().row() + 1;
    }

    /// The entry of that row is in the editor and its row, and nothing else, is highlighted.
    void ExpectLoaded(int row, int entry)
    {
        EXPECT_EQ(Highlighted(), row);
        EXPECT_EQ(Grid().currentIndex().row() + 1, row);
        EXPECT_EQ(Grid().TextMatrix(row, EntryColumn::UniqueId), QString::number(entry));
        EXPECT_EQ(Text("txtDescription"), Number(entry));
    }

    /// No row is highlighted or current, and the editor is not on an entry of the list.
    void ExpectNoRow()
    {
        EXPECT_EQ(Highlighted(), 0);
        EXPECT_FALSE(Grid().currentIndex().isValid());
        EXPECT_TRUE(Panel(1).startsWith(u"Found "));
    }

    int TopRow() { return Grid().rowAt(0) + 1; }

    std::vector<SampleCompany> Others; ///< after the first one
    clsWatchedMessages Watched; ///< the program's, once it is started with StartList
};
