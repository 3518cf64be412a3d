#pragma once

#include "app/clsProgram.h"
#include "platform/clsGrid.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Windows.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

/// The real main window over real databases, and a user's hands. Keys that the program sends to
/// itself arrive as they do outside of tests.
class EntryWindow : public testing::Test
{
protected:
    EntryWindow() { Company.Entries = std::vector<EntryRecord>(); }

    void Start()
    {
        BuildSampleCompanies(Folder.path(), {Company});
        Program = std::make_unique<clsProgram>(
            Folder.path(), ProgramServices{Messages, Keys, Process, Clock, Settings, Browser});
        Program->StartUp();
        ASSERT_TRUE(ShowActive(Window()));
        LetEventsRun();
    }

    frmEntryList &Window() { return *Program->MainWindow(); }
    QLineEdit &Box(const char *name) { return Control<QLineEdit>(Window(), name); }
    QComboBox &List(const char *name) { return Control<QComboBox>(Window(), name); }
    QWidget &Any(const char *name) { return Control<QWidget>(Window(), name); }
    clsGrid &Grid() { return Control<clsGrid>(Window(), "msgEntryList"); }
    QString Text(const char *name) { return Box(name).text(); }
    QString Panel(int number)
    {
        return Control<QLabel>(Window(), qPrintable(QStringLiteral("Panel%1").arg(number))).text();
    }

    /// The name of the control that takes the keys.
    QString Focused()
    {
        const QWidget *focused = Window().focusWidget();
        return focused == nullptr ? QString() : focused->objectName();
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(Window().focusWidget(), key, modifiers);
        LetEventsRun();
    }

    void Type(const QString &text)
    {
        QTest::keyClicks(Window().focusWidget(), text);
        LetEventsRun();
    }

    void GoTo(const char *name)
    {
        Any(name).setFocus(Qt::TabFocusReason);
        LetEventsRun();
    }

    void ClickButton(const char *name)
    {
        QTest::mouseClick(&Any(name), Qt::LeftButton);
        LetEventsRun();
    }

    void ClickRow(int row)
    {
        const QModelIndex index = Grid().model()->index(row - 1, 2);
        QTest::mouseClick(Grid().viewport(), Qt::LeftButton, {}, Grid().visualRect(index).center());
        LetEventsRun();
    }

    void ClickHeader(int column)
    {
        QHeaderView &header = *Grid().horizontalHeader();
        QTest::mouseClick(header.viewport(), Qt::LeftButton, {},
            {header.sectionViewportPosition(column) + 5, header.height() / 2});
        LetEventsRun();
    }

    /// The texts of one column, row by row.
    QStringList Column(int column)
    {
        QStringList texts;
        for (int row = 1; row < Grid().Rows(); ++row)
            texts.append(Grid().TextMatrix(row, column));
        return texts;
    }

    bool IsMarked(int row) { return Grid().selectionModel()->isRowSelected(row - 1, {}); }
    bool AnythingMarked() { return Grid().selectionModel()->hasSelection(); }

    std::vector<EntryRecord> Stored()
    {
        RecordStore store;
        store.SetCreator(CodeNumber(SampleCodes().Creator));
        const auto handle = store.OpenDatabase(
            1, Folder.path() + QStringLiteral("/ABCEntries-WkLg"), 0, 0, 0, 0, 3);
        std::vector<EntryRecord> entries;
        for (store.MoveFirst(handle); !store.IsEndOfTable(handle); store.MoveNext(handle))
            store.ReadRecord(handle, entries.emplace_back());
        return entries;
    }

    QTemporaryDir Folder;
    SampleCompany Company;
    clsRecordedMessages Messages;
    clsProgramKeys Keys;
    clsRecordedProcess Process;
    clsFixedClock Clock;
    clsRecordedSettings Settings;
    clsRecordedBrowser Browser;
    std::unique_ptr<clsProgram> Program;
};
