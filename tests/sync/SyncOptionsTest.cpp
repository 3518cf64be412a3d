// The synchronisation options: texts, what is shown and what is written.

#include "platform/clsStatusBar.h"
#include "store/DroppedCompany.h"
#include "store/StoreErrors.h"
#include "sync/frmSyncOptions.h"
#include "tests/support/Modal.h"
#include "tests/support/Recorded.h"
#include "tests/support/SampleCompany.h"
#include "tests/support/Windows.h"

#include <QLabel>
#include <QPushButton>
#include <QRadioButton>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QString Erases
    = u"W A R N I N G !!!\r\nThis sync option will erase all Worklog data on the Computer."_s;

class SyncOptions : public testing::Test
{
protected:
    /// A company with this option stored, opened as the main window does.
    void Open(const QString &option, const QString &accountingName = u"MAS 90"_s)
    {
        SampleCompany company;
        company.Options.Sync_Option = option;
        company.Options.Accounting_Name = accountingName;
        m_stored = company.Options;
        m_folder = std::make_unique<SampleFolder>(std::vector{company});
        m_folder->OpenAll();
        m_session.CurrentCompanyCode = company.Code;
        m_session.CurrentCompanyName = company.Name;
        m_folder->Tables.Options.LoadOptions();
        m_folder->Tables.Employee.LoadEmployee();
        NewDialog();
    }
    void NewDialog()
    {
        m_form.reset();
        m_module = std::make_unique<modSyncOptions>(m_folder->Tables, m_session, m_clock);
        m_form = std::make_unique<frmSyncOptions>(*m_module, m_messages, m_keys);
        m_loaded = m_form->Load();
    }
    /// The whole record, as the accounting side finds it.
    OptionsRecord InTheFile()
    {
        RecordStore store;
        store.SetCreator(CodeNumber(SampleCodes().Creator));
        OptionsRecord record;
        EXPECT_TRUE(store.ReadRecord(
            store.OpenDatabase(1, m_folder->Path() + u"/ABCOptions-WkLg"_s, 0, 0, 0, 0, 3),
            record));
        return record;
    }
    QRadioButton &Option(int option)
    {
        return Control<QRadioButton>(*m_form, ("optSyncOption" + std::to_string(option)).c_str());
    }
    int Selected()
    {
        for (int option = 0; option < 4; ++option) {
            if (Option(option).isChecked())
                return option;
        }
        return -1;
    }
    QString Description() { return Control<QLabel>(*m_form, "lblSyncOptionDesc").text(); }
    void Click(const char *name)
    {
        QTest::mouseClick(&Control<QPushButton>(*m_form, name), Qt::LeftButton);
    }

    OptionsRecord m_stored;
    std::unique_ptr<SampleFolder> m_folder;
    SessionState m_session;
    clsRecordedMessages m_messages;
    clsRecordedKeys m_keys;
    clsFixedClock m_clock;
    std::unique_ptr<modSyncOptions> m_module;
    std::unique_ptr<frmSyncOptions> m_form;
    bool m_loaded = false;
};

} // namespace

TEST_F(SyncOptions, EachStoredOptionIsSelectedWithItsDescription)
{
    const QStringList descriptions
        = {u"This sync option will upload Worklog on the Computer and download new information "
           u"from MAS 90."_s,
            u"This sync option will upload Worklog entries made on the Computer."_s, Erases,
            u"This sync option will not synchronize Worklog data."_s};
    for (int option = 0; option < 4; ++option) {
        Open(QString::number(option));
        EXPECT_EQ(Selected(), option);
        EXPECT_EQ(Description(), descriptions[option]);
    }
}

TEST_F(SyncOptions, TheOptionThatErasesSaysHowManyEntries)
{
    const auto notice
        = [&] { return Control<clsStatusBar>(*m_form, "StatusBar1").currentMessage(); };
    const QString two
        = u"The next synchronization will erase 2 entries of this company without uploading them."_s;
    Open(u"0"_s);
    m_folder->Tables.Entries.AddEntry(
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(2)));
    ASSERT_TRUE(ShowActive(*m_form));
    EXPECT_EQ(notice(), QString());
    QTest::mouseClick(&Option(2), Qt::LeftButton, {}, QPoint(8, Option(2).height() / 2));
    EXPECT_EQ(notice(),
        u"The next synchronization will erase the entry of this company without uploading it."_s);
    m_folder->Tables.Entries.AddEntry(
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 3, 3), Currency::FromWhole(2)));
    for (int option = 0; option < 4; ++option) {
        QTest::mouseClick(
            &Option(option), Qt::LeftButton, {}, QPoint(8, Option(option).height() / 2));
        ASSERT_EQ(Selected(), option);
        EXPECT_EQ(notice(), option == 2 ? two : QString()) << option;
    }
    m_session.CurrentCompanyName = DroppedCompanyName(u"Old Works"_s);
    QTest::mouseClick(&Option(0), Qt::LeftButton, {}, QPoint(8, Option(0).height() / 2));
    QTest::mouseClick(&Option(2), Qt::LeftButton, {}, QPoint(8, Option(2).height() / 2));
    EXPECT_EQ(notice(), QString()) << "nothing is erased that accounting no longer lists";
    Open(u"2"_s);
    EXPECT_EQ(notice(), QString()) << "without entries there is nothing to erase";
}

TEST_F(SyncOptions, CaptionsCarryTheAccountingName)
{
    Open(u"0"_s, u"  Ledger & Sons "_s);
    EXPECT_EQ(m_form->windowTitle(), u"Sync"_s);
    EXPECT_EQ(Option(0).text(), u"Full Sync"_s);
    EXPECT_EQ(m_module->Caption(1), u"Computer updates Ledger & Sons"_s);
    EXPECT_EQ(m_module->Caption(2), u"Ledger & Sons updates Computer"_s);
    EXPECT_EQ(Option(1).text(), u"Computer updates Ledger && Sons"_s); // shown as one "&"
    EXPECT_TRUE(Option(1).shortcut().isEmpty());
    EXPECT_TRUE(Option(2).shortcut().isEmpty());
    EXPECT_EQ(Option(3).text(), u"No Sync"_s);
    EXPECT_EQ(Control<QPushButton>(*m_form, "cmdAccept").text(), u"&Accept"_s);
    EXPECT_EQ(Control<QPushButton>(*m_form, "cmdCancel").text(), u"&Cancel"_s);
    EXPECT_EQ(Control<QPushButton>(*m_form, "cmdHelp").text(), u"Help"_s);
}

TEST_F(SyncOptions, AnEmptyAccountingNameFollowsTheFormula)
{
    Open(u"0"_s, u"  "_s);
    EXPECT_EQ(Option(1).text(), u"Computer updates "_s);
    EXPECT_EQ(Option(2).text(), u" updates Computer"_s);
    EXPECT_TRUE(Description().endsWith(u"download new information from ."_s));
}

TEST_F(SyncOptions, ANameIsNoMarkup)
{
    Open(u"0"_s, u"<b>Ledger</b>"_s);
    EXPECT_EQ(Control<QLabel>(*m_form, "lblSyncOptionDesc").textFormat(), Qt::PlainText);
    EXPECT_TRUE(Description().contains(u"<b>Ledger</b>"_s));
}

TEST_F(SyncOptions, AnyOtherValueSelectsNothingAndIsWrittenBack)
{
    for (const QString &value : {u"7"_s, u""_s, u"01"_s, u" 1"_s}) {
        Open(value);
        EXPECT_EQ(Selected(), -1) << value.toStdString();
        EXPECT_EQ(Description(), QString());
        m_folder->Tables.Options.Working.Expenses = u"N"_s; // shows that the write happens
        PlayModal(*m_form, [&] { Click("cmdAccept"); });
        EXPECT_EQ(InTheFile().Sync_Option, value);
        EXPECT_EQ(InTheFile().Expenses, u"N"_s);
    }
}

TEST_F(SyncOptions, AClickShowsAndKeepsTheOptionAndAcceptWritesIt)
{
    Open(u"0"_s);
    PlayModal(*m_form, [&] {
        QTest::mouseClick(&Option(2), Qt::LeftButton, {}, QPoint(8, Option(2).height() / 2));
        EXPECT_EQ(Selected(), 2);
        EXPECT_EQ(Description(), Erases);
        EXPECT_EQ(m_folder->Tables.Options.Working.Sync_Option, u"2"_s);
        EXPECT_EQ(InTheFile().Sync_Option, u"0"_s); // not before Accept
        QTest::keyClick(m_form.get(), Qt::Key_A, Qt::AltModifier);
    });
    EXPECT_EQ(InTheFile().Sync_Option, u"2"_s);
    EXPECT_EQ(m_folder->Tables.Options.Record.Sync_Option, u"2"_s);
    NewDialog();
    EXPECT_EQ(Selected(), 2);
}

TEST_F(SyncOptions, OptionsAreChosenByArrowKeysAndAcceptedByEnter)
{
    Open(u"0"_s);
    PlayModal(*m_form, [&] {
        EXPECT_TRUE(Option(0).hasFocus());
        const QStringList texts
            = {u"This sync option will upload Worklog entries made on the Computer."_s, Erases,
                u"This sync option will not synchronize Worklog data."_s};
        for (int option = 1; option < 4; ++option) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
            EXPECT_EQ(Selected(), option);
            EXPECT_EQ(Description(), texts[option - 1]);
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    });
    EXPECT_EQ(InTheFile().Sync_Option, u"3"_s);
}

TEST_F(SyncOptions, AcceptKeepsEveryOtherFieldAndTrimsTheAccountingName)
{
    Open(u"3"_s, u"  MAS 90  "_s);
    PlayModal(*m_form, [&] { Click("cmdAccept"); });
    OptionsRecord expected = m_stored;
    expected.Accounting_Name = u"MAS 90"_s;
    EXPECT_TRUE(InTheFile().Fields() == expected.Fields());
}

TEST_F(SyncOptions, CancelWritesNothingAndTheNextDialogShowsWhatIsStored)
{
    Open(u"1"_s);
    for (const bool byEscape : {false, true}) {
        PlayModal(*m_form, [&] {
            QTest::mouseClick(&Option(3), Qt::LeftButton, {}, QPoint(8, Option(3).height() / 2));
            if (byEscape)
                QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
            else
                Click("cmdCancel");
        });
        EXPECT_EQ(InTheFile().Sync_Option, u"1"_s);
        EXPECT_EQ(m_folder->Tables.Options.Working.Sync_Option, u"3"_s); // until the next load
        NewDialog();
        EXPECT_EQ(Selected(), 1);
    }
    PlayModal(*m_form, [&] { Click("cmdAccept"); });
    EXPECT_EQ(InTheFile().Sync_Option, u"1"_s); // what is shown is what is written
}

TEST_F(SyncOptions, AValueThatSelectsNothingIsWrittenBackAlsoAfterACancelledClick)
{
    Open(u"x"_s);
    PlayModal(*m_form, [&] {
        QTest::mouseClick(&Option(1), Qt::LeftButton, {}, QPoint(8, Option(1).height() / 2));
        Click("cmdCancel");
    });
    NewDialog();
    EXPECT_EQ(Selected(), -1);
    PlayModal(*m_form, [&] { Click("cmdAccept"); });
    EXPECT_EQ(InTheFile().Sync_Option, u"x"_s);
}

TEST_F(SyncOptions, ARefusedWriteIsToldAndTheDialogStandsOpen)
{
    Open(u"0"_s);
    ASSERT_TRUE(ShowActive(*m_form));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down);
    m_folder->Tables.Options.Handle
        = m_folder->Tables.Main.CloseTable(m_folder->Tables.Options.Handle);
    Click("cmdAccept");
    ASSERT_THAT(m_messages.Texts(),
        ElementsAre(
            u"Error #%1 (No database is open under the handle 0)."_s.arg(StoreErrors::BadHandle)));
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_TRUE(m_form->isVisible());
    EXPECT_EQ(m_folder->Tables.Options.Record.Sync_Option, u"0"_s);
    EXPECT_EQ(InTheFile().Sync_Option, u"0"_s);
}

TEST_F(SyncOptions, AnIncompleteCompanyKeepsItsOptions)
{
    // The databases are not ready, so nobody has loaded the options yet.
    Open(u"2"_s);
    m_session.NotSynchronised = true;
    m_folder->Tables.Options.Record = OptionsRecord();
    m_folder->Tables.Options.Working = OptionsRecord();
    NewDialog();
    EXPECT_EQ(Selected(), 2);
    PlayModal(*m_form, [&] { Click("cmdAccept"); });
    EXPECT_TRUE(InTheFile().Fields() == m_stored.Fields());
}

TEST_F(SyncOptions, WithoutDatabasesThereIsNothingToChooseYet)
{
    Open(u"2"_s);
    EXPECT_TRUE(m_loaded);
    m_folder->CloseAll();
    m_session.NotSynchronised = true;
    NewDialog();
    EXPECT_FALSE(m_loaded);
    ASSERT_THAT(m_messages.Texts(), ElementsAre(u"Please perform a synchronization first."_s));
    EXPECT_EQ(m_messages.Shown[0].Icon, MessageIcon::Exclamation);
    EXPECT_EQ(InTheFile().Sync_Option, u"2"_s);
}

TEST_F(SyncOptions, TheStatusBarNamesCompanyEmployeeAndDay)
{
    Open(u"0"_s);
    EXPECT_EQ(Control<QLabel>(*m_form, "Panel1").text(), u"Abacus Advisers"_s);
    EXPECT_EQ(Control<QLabel>(*m_form, "Panel2").text(), u"JRD"_s);
    EXPECT_EQ(Control<QLabel>(*m_form, "Panel3").text(), u"ABC"_s);
    EXPECT_EQ(Control<QLabel>(*m_form, "Panel4").text(), u"03/09/2026"_s);
}

TEST_F(SyncOptions, HelpSendsF1)
{
    Open(u"0"_s);
    ASSERT_TRUE(ShowActive(*m_form));
    Click("cmdHelp");
    EXPECT_THAT(m_keys.Sent, ElementsAre(u"{F1}"_s));
    EXPECT_TRUE(m_form->isVisible());
    EXPECT_THAT(m_messages.Texts(), IsEmpty());
}
