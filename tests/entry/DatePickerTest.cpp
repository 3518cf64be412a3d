// The date of the entry: typing it, choosing it in the calendar, and the ways in and out.

#include "platform/clsDatePicker.h"
#include "tests/entry/EntryWindow.h"

#include <QCalendarWidget>
#include <QClipboard>
#include <QStatusBar>
#include <QTableView>

#include <functional>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const QDate Today(2026, 3, 9);

class DatePicker : public EntryWindow
{
protected:
    DatePicker()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Options.Billing_Option_Setting = u"1"_s;
        Company.Options.Project_Required = u"N"_s;
        Company.Employee.Rate_Permission = u"4"_s;
    }

    clsDatePicker &Picker() { return Control<clsDatePicker>(Window(), "dtpDate"); }
    QDateEdit::Section Part() { return Picker().currentSection(); }
    QString Shown() { return Picker().text(); }
    QString Notice() { return Control<QStatusBar>(Window(), "StatusBar1").currentMessage(); }
    bool IsChanged() { return Window().isWindowModified(); }

    void StartAtTheDate(const QDate &date = Today)
    {
        Clock.Time.setDate(date);
        Start();
        ASSERT_EQ(Focused(), u"dtpDate"_s);
        ASSERT_EQ(Picker().date(), date);
    }

    void StartWithAnEntry(const QDate &date = Today)
    {
        Company.Entries->push_back(
            SampleEntry(u"0100"_s, {}, u"CONS"_s, date, Currency::FromWhole(1)));
        Start();
        ClickRow(1);
        ASSERT_EQ(Focused(), u"dtpDate"_s);
        ASSERT_EQ(Picker().date(), date);
    }

    void EnterCode(const QString &code)
    {
        Type(code);
        Press(Qt::Key_Return);
    }

    /// From the customer on; the focus is in the description after it.
    void EnterTheRest()
    {
        GoTo("txtCustomer");
        EnterCode(u"0100"_s);
        EnterCode({});
        EnterCode(u"cons"_s);
        EnterCode(u"1"_s);
    }

    void ClickPart(QDateEdit::Section part)
    {
        auto &line = Control<QLineEdit>(Picker(), "qt_spinbox_lineedit");
        const int at = part == QDateEdit::MonthSection ? 1 : part == QDateEdit::DaySection ? 4 : 7;
        const int x = line.fontMetrics().horizontalAdvance(line.text().left(at))
            + line.textMargins().left() + 3;
        QTest::mouseClick(&line, Qt::LeftButton, {}, {x, line.height() / 2});
        LetEventsRun();
    }

    void ClickTheArrow()
    {
        QTest::mouseClick(
            &Picker(), Qt::LeftButton, {}, {Picker().width() - 6, Picker().height() / 2});
        LetEventsRun();
    }

    QCalendarWidget &Calendar() { return *Picker().calendarWidget(); }

    void ClickDay(int day)
    {
        auto &days = Control<QTableView>(Calendar(), "qt_calendar_calendarview");
        const QAbstractItemModel &model = *days.model();
        for (int row = 1; row < model.rowCount(); ++row)
            for (int column = 0; column < model.columnCount(); ++column) {
                const QModelIndex index = model.index(row, column);
                // The month's first week also shows days of the month before.
                if (index.data().toInt() != day || (day > 7 && row == 1))
                    continue;
                QTest::mouseClick(
                    days.viewport(), Qt::LeftButton, {}, days.visualRect(index).center());
                LetEventsRun();
                return;
            }
        FAIL() << "no such day";
    }
};

} // namespace

// Ways in

TEST_F(DatePicker, EnteredFromTheKeyboardTheMonthIsSelected)
{
    StartAtTheDate();
    for (const char *from : {"txtCustomer", "msgEntryList"}) {
        GoTo("dtpDate");
        Press(Qt::Key_End);
        ASSERT_EQ(Part(), QDateEdit::YearSection);
        GoTo(from);
        const bool back = QLatin1String(from) == "txtCustomer"_L1;
        Press(back ? Qt::Key_Backtab : Qt::Key_Tab, back ? Qt::ShiftModifier : Qt::NoModifier);
        ASSERT_EQ(Focused(), u"dtpDate"_s);
        EXPECT_EQ(Part(), QDateEdit::MonthSection) << from;
        EXPECT_EQ(Control<QLineEdit>(Picker(), "qt_spinbox_lineedit").selectedText(), u"03"_s);
    }
    EXPECT_TRUE(List("cboCompany").isEnabled()) << "getting the focus is no edit";
}

TEST_F(DatePicker, AfterShiftTabUpChangesTheMonth)
{
    StartAtTheDate();
    Press(Qt::Key_Return);
    ASSERT_EQ(Focused(), u"txtCustomer"_s);
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    Press(Qt::Key_Up);
    EXPECT_EQ(Picker().date(), QDate(2026, 4, 9));
}

TEST_F(DatePicker, AClickIntoAPartSelectsItForTyping)
{
    StartAtTheDate();
    for (const auto part :
        {QDateEdit::DaySection, QDateEdit::YearSection, QDateEdit::MonthSection}) {
        ClickPart(part);
        EXPECT_EQ(Part(), part);
        EXPECT_EQ(Control<QLineEdit>(Picker(), "qt_spinbox_lineedit").selectedText().size(), 2);
    }
    ClickPart(QDateEdit::DaySection);
    Type(u"27"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 3, 27));
    ClickPart(QDateEdit::DaySection);
    Type(u"15"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 3, 15)) << "the press begins the part again";
}

// Typing

TEST_F(DatePicker, ADateIsTypedDigitByDigit)
{
    StartAtTheDate();
    for (const char *keys :
        {"111926", "11/19/26", "11-19-26", "11.19.26", "11192026", "11/19/2026"}) {
        ASSERT_EQ(Focused(), u"dtpDate"_s);
        ASSERT_EQ(Picker().date(), Today);
        Type(QString::fromLatin1(keys));
        EXPECT_EQ(Picker().date(), QDate(2026, 11, 19)) << keys;
        EXPECT_EQ(Shown(), u"11/19/26"_s) << keys;
        EXPECT_EQ(Focused(), u"dtpDate"_s) << keys;
        EXPECT_EQ(Text("txtCustomer"), QString()) << keys;
        EXPECT_EQ(Notice(), QString()) << keys;
        ClickButton("cmdUndo");
    }
}

TEST_F(DatePicker, PartsOfOneDigitEndWithASeparator)
{
    StartAtTheDate();
    Type(u"1/5/26"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 1, 5));
    Press(Qt::Key_Home);
    Type(u"/7"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 1, 7)) << "also as the first key";
    Type(u"////"_s);
    EXPECT_EQ(Focused(), u"dtpDate"_s);
    EXPECT_EQ(Part(), QDateEdit::YearSection);
}

TEST_F(DatePicker, TheTypedDateIsStored)
{
    StartAtTheDate();
    Type(u"111926"_s);
    EXPECT_FALSE(List("cboCompany").isEnabled());
    EnterTheRest();
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 11, 19));
}

TEST_F(DatePicker, TheThirdKeyArrivesAsRightWhateverItIs)
{
    StartAtTheDate();
    Type(u"12"_s);
    EXPECT_EQ(Part(), QDateEdit::MonthSection);
    Type(u"2"_s);
    EXPECT_EQ(Part(), QDateEdit::DaySection);
    EXPECT_EQ(Picker().date(), QDate(2026, 12, 2));
    Type(u"5"_s); // counts on from 1
    EXPECT_EQ(Part(), QDateEdit::DaySection);
    EXPECT_EQ(Picker().date(), QDate(2026, 12, 25));
    Type(u"x"_s);
    EXPECT_EQ(Part(), QDateEdit::YearSection);
    EXPECT_EQ(Picker().date(), QDate(2026, 12, 25));
}

TEST_F(DatePicker, AnArrowStartsTheCountAgainAndUpAndDownDoNotCount)
{
    StartAtTheDate();
    Type(u"1"_s);
    Press(Qt::Key_Right);
    EXPECT_EQ(Part(), QDateEdit::DaySection);
    Type(u"1"_s);
    Press(Qt::Key_Up);
    Press(Qt::Key_Down);
    Type(u"2"_s);
    EXPECT_EQ(Part(), QDateEdit::DaySection) << "two keys so far";
    Type(u"3"_s);
    EXPECT_EQ(Part(), QDateEdit::YearSection);
}

TEST_F(DatePicker, ShiftAloneIsNoKeyOfTheDate)
{
    StartAtTheDate();
    // Where digits are typed with Shift, each would otherwise count twice.
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_1, Qt::Key_1, Qt::Key_9}) {
        QTest::keyClick(&Picker(), Qt::Key_Shift);
        QTest::keyClick(&Picker(), key);
    }
    EXPECT_EQ(Picker().date(), QDate(2026, 11, 19));
}

TEST_F(DatePicker, KeypadDigitsAreDigits)
{
    StartAtTheDate();
    for (const Qt::Key key : {Qt::Key_1, Qt::Key_1, Qt::Key_Slash, Qt::Key_1, Qt::Key_9})
        Press(key, Qt::KeypadModifier);
    EXPECT_EQ(Picker().date(), QDate(2026, 11, 19));
    Press(Qt::Key_Left, Qt::KeypadModifier);
    EXPECT_EQ(Part(), QDateEdit::MonthSection);
}

TEST_F(DatePicker, ADayThatTheMonthLacksIsRefusedAndNotReplaced)
{
    StartAtTheDate();
    Type(u"1131"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 11, 9));
    EXPECT_EQ(Shown(), u"11/09/26"_s);
    EXPECT_EQ(Notice(), u"November 2026 has no day 31."_s);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    Type(u"27"_s);
    EXPECT_EQ(Picker().date(), QDate(2027, 11, 9));
    EXPECT_EQ(Notice(), u"November 2026 has no day 31."_s) << "it is still not what was typed";
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Notice(), QString());
}

TEST_F(DatePicker, TheNoticeGoesWithTheNextDate)
{
    StartAtTheDate();
    Type(u"13"_s);
    ASSERT_EQ(Notice(), u"There is no month 13."_s);
    Press(Qt::Key_Up);
    EXPECT_EQ(Picker().date(), QDate(2026, 4, 9));
    EXPECT_EQ(Notice(), QString());
}

TEST_F(DatePicker, ALeapDayIsTypedBeforeItsYear)
{
    StartAtTheDate();
    Type(u"0229"_s);
    EXPECT_EQ(Shown(), u"02/29/26"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 2, 9));
    EXPECT_EQ(Notice(), u"February 2026 has no day 29."_s);
    Type(u"28"_s);
    EXPECT_EQ(Picker().date(), QDate(2028, 2, 29));
    EXPECT_EQ(Notice(), QString());
}

TEST_F(DatePicker, ADateThatIsNoneIsNotLeft)
{
    StartWithAnEntry();
    const auto typeNoDate = [&] {
        GoTo("dtpDate");
        Press(Qt::Key_Home);
        Type(u"0229"_s);
        ASSERT_EQ(Shown(), u"02/29/26"_s);
    };
    const auto expectRefused = [&](const char *way) {
        EXPECT_EQ(Focused(), u"dtpDate"_s) << way;
        EXPECT_EQ(Shown(), u"02/09/26"_s) << way;
        EXPECT_EQ(Notice(), u"February 2026 has no day 29."_s) << way;
        EXPECT_EQ(Stored()[0].Date.date(), Today) << way;
    };
    typeNoDate();
    Press(Qt::Key_Tab);
    expectRefused("Tab");
    typeNoDate();
    Press(Qt::Key_Return);
    expectRefused("Enter");
    typeNoDate();
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    expectRefused("Shift+Tab");
    typeNoDate();
    ClickButton("cmdOK");
    expectRefused("OK");
    typeNoDate();
    ClickButton("txtDescription");
    expectRefused("a click into another field");
    typeNoDate();
    Messages.Answers = {MessageAnswer::Yes};
    Press(Qt::Key_Escape);
    expectRefused("Yes to the save question");
    EXPECT_TRUE(Window().isVisible());
    Press(Qt::Key_Tab);
    EXPECT_EQ(Focused(), u"txtCustomer"_s) << "the date from before is one";
}

TEST_F(DatePicker, AHalfTypedDateIsTheEntrysOnEveryWayOut)
{
    StartWithAnEntry();
    const auto leave = [&](const char *digit, const std::function<void()> &way) {
        ClickRow(1);
        ASSERT_EQ(Focused(), u"dtpDate"_s);
        Type(QString::fromLatin1(digit)); // could still become October to December
        way();
        EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, digit[0] - '0', 9)) << digit;
    };
    leave("1", [&] { ClickButton("cmdOK"); });
    leave("2", [&] {
        Press(Qt::Key_Tab);
        ClickButton("cmdOK");
    });
    leave("3", [&] {
        Press(Qt::Key_Return);
        ClickButton("cmdOK");
    });
    Messages.Answers = {MessageAnswer::Yes, MessageAnswer::Yes};
    leave("1", [&] { ClickRow(1); });
    leave("4", [&] {
        Press(Qt::Key_Escape);
        EXPECT_FALSE(Window().isVisible());
    });
    EXPECT_EQ(Messages.Shown.size(), 2);
}

TEST_F(DatePicker, AHalfTypedZeroIsAnEditToo)
{
    StartWithAnEntry();
    Type(u"0"_s);
    EXPECT_EQ(Shown(), u"00/09/26"_s);
    EXPECT_TRUE(IsChanged());
    Messages.Answers = {MessageAnswer::Cancel};
    Press(Qt::Key_Escape);
    EXPECT_TRUE(Window().isVisible());
    EXPECT_EQ(Messages.Shown.size(), 1);
    EXPECT_EQ(Shown(), u"00/09/26"_s) << "Cancel leaves everything as it was";
    Type(u"5"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 5, 9));
}

TEST_F(DatePicker, BackspaceTakesBackWhatWasTyped)
{
    StartAtTheDate();
    Press(Qt::Key_Backspace);
    EXPECT_FALSE(IsChanged()) << "nothing was";
    for (const Qt::Key key : {Qt::Key_Backspace, Qt::Key_Delete}) {
        Type(u"1"_s);
        Press(key);
        EXPECT_EQ(Picker().date(), Today);
    }
    Type(u"12"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 12, 9)) << "both digits are the month's";
}

TEST_F(DatePicker, LeftAndRightStayInTheField)
{
    StartAtTheDate();
    for (const auto modifiers :
        {Qt::KeyboardModifiers(), Qt::KeyboardModifiers(Qt::ControlModifier),
            Qt::KeyboardModifiers(Qt::ShiftModifier)}) {
        Press(Qt::Key_Home);
        Press(Qt::Key_Left, modifiers);
        EXPECT_EQ(Part(), QDateEdit::MonthSection);
        Press(Qt::Key_Right, modifiers);
        EXPECT_EQ(Part(), QDateEdit::DaySection);
        Press(Qt::Key_End);
        Press(Qt::Key_Right, modifiers);
        EXPECT_EQ(Part(), QDateEdit::YearSection);
        EXPECT_EQ(Focused(), u"dtpDate"_s);
    }
    EXPECT_EQ(Picker().date(), Today);
    EXPECT_FALSE(IsChanged());
}

TEST_F(DatePicker, UpAndDownGoRound)
{
    StartAtTheDate(QDate(2026, 12, 31));
    Press(Qt::Key_Up);
    EXPECT_EQ(Picker().date(), QDate(2026, 1, 31));
    Press(Qt::Key_Down);
    EXPECT_EQ(Picker().date(), QDate(2026, 12, 31));
    Press(Qt::Key_PageDown);
    EXPECT_EQ(Picker().date().month(), 2);
}

TEST_F(DatePicker, AWholeDateIsPastedAndNothingElse)
{
    StartAtTheDate();
    QApplication::clipboard()->setText(u"some text"_s);
    Press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(Picker().date(), Today);
    EXPECT_EQ(Shown(), u"03/09/26"_s);
    EXPECT_EQ(Notice(), u"\"some text\" is not a date."_s);
    EXPECT_FALSE(IsChanged());
    for (const char *text : {"11/19/2026", "2026-11-19"}) {
        QApplication::clipboard()->setText(QString::fromLatin1(text));
        Press(Qt::Key_V, Qt::ControlModifier);
        EXPECT_EQ(Picker().date(), QDate(2026, 11, 19));
        EXPECT_TRUE(IsChanged());
        EXPECT_EQ(Notice(), QString());
        Press(Qt::Key_Up);
    }
    Press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), u"12/19/26"_s);
}

TEST_F(DatePicker, TheWheelChangesNothing)
{
    StartAtTheDate();
    const QPointF middle = Picker().rect().center();
    QWheelEvent turn(middle, Picker().mapToGlobal(middle), {}, {0, 120}, Qt::NoButton,
        Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(&Picker(), &turn);
    EXPECT_EQ(Picker().date(), Today);
    EXPECT_FALSE(IsChanged());
}

TEST_F(DatePicker, EnterMovesOnToTheCustomer)
{
    StartAtTheDate();
    Press(Qt::Key_Return);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
}

// Entered with the mouse

TEST_F(DatePicker, EnteredWithTheMouseItsChangesCountOnceTheKeyboardEntersIt)
{
    const QString notice = u"The date counts once the field has been entered with the keyboard."_s;
    StartAtTheDate();
    EnterTheRest();
    ClickPart(QDateEdit::MonthSection);
    ASSERT_EQ(Focused(), u"dtpDate"_s);
    EXPECT_EQ(Notice(), QString()) << "nothing is held back yet";
    Press(Qt::Key_Up);
    EXPECT_EQ(Picker().date(), QDate(2026, 4, 9)) << "the picker itself moves";
    EXPECT_EQ(Notice(), notice);
    GoTo("txtCustomer");
    EXPECT_EQ(Notice(), notice) << "as long as it is held back";
    EnterCode(u"0200"_s);
    EXPECT_EQ(Text("txtCustomer"), u"0200"_s);
    EXPECT_EQ(Picker().date(), QDate(2026, 4, 9)) << "a code check leaves the date as chosen";
    EXPECT_EQ(Notice(), notice);
    GoTo("dtpDate");
    EXPECT_EQ(Notice(), QString());
    EXPECT_EQ(Picker().date(), QDate(2026, 4, 9));
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 4, 9));
}

TEST_F(DatePicker, ADateThatIsHeldBackIsNotStored)
{
    StartAtTheDate();
    EnterTheRest();
    ClickPart(QDateEdit::MonthSection);
    Press(Qt::Key_Up);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Date.date(), Today);
    EXPECT_EQ(Picker().date(), Today) << "the new entry's";
    EXPECT_EQ(Notice(), QString());
}

TEST_F(DatePicker, ADateHeldBackMarksTheEntryChangedAsItIsTakenOver)
{
    StartWithAnEntry();
    ClickPart(QDateEdit::MonthSection);
    ClickPart(QDateEdit::MonthSection);
    GoTo("txtCustomer");
    ClickPart(QDateEdit::MonthSection);
    Press(Qt::Key_Up);
    EXPECT_FALSE(IsChanged());
    GoTo("txtCustomer");
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    ASSERT_EQ(Focused(), u"dtpDate"_s);
    EXPECT_TRUE(IsChanged());
    EXPECT_FALSE(List("cboCompany").isEnabled());
}

TEST_F(DatePicker, ANewEntryStartsWithADateThatCounts)
{
    StartAtTheDate();
    EnterTheRest();
    ClickPart(QDateEdit::MonthSection);
    ASSERT_EQ(Focused(), u"dtpDate"_s);
    QTest::keyClick(&Window(), Qt::Key_U, Qt::AltModifier);
    ASSERT_TRUE(QTest::qWaitFor([&] { return Text("txtCustomer").isEmpty(); }));
    ASSERT_EQ(Focused(), u"dtpDate"_s) << "it never left";
    Type(u"111926"_s);
    EXPECT_EQ(Notice(), QString());
    EnterTheRest();
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 11, 19));
}

TEST_F(DatePicker, APressInTheFieldThatHasTheFocusHoldsNothingBack)
{
    StartWithAnEntry();
    ClickPart(QDateEdit::DaySection);
    Type(u"20"_s);
    EXPECT_TRUE(IsChanged());
    EXPECT_EQ(Notice(), QString());
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 3, 20));
}

// The calendar

TEST_F(DatePicker, ADateChosenInTheCalendarMarksTheEntryChanged)
{
    StartWithAnEntry();
    EXPECT_FALSE(IsChanged());
    ClickTheArrow();
    ASSERT_TRUE(Calendar().isVisible());
    ClickDay(20);
    EXPECT_FALSE(Calendar().isVisible());
    EXPECT_EQ(Picker().date(), QDate(2026, 3, 20));
    EXPECT_TRUE(IsChanged());
    EXPECT_FALSE(List("cboCompany").isEnabled());
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 3, 20));
}

TEST_F(DatePicker, AlsoTheSameDateChosenAgainMarksTheEntryChanged)
{
    StartWithAnEntry();
    ClickTheArrow();
    ClickDay(9);
    EXPECT_EQ(Picker().date(), Today);
    EXPECT_TRUE(IsChanged());
}

TEST_F(DatePicker, ADateChosenAfterEnteringWithTheMouseMarksTheEntryButIsHeldBack)
{
    StartWithAnEntry();
    GoTo("txtDescription");
    ClickTheArrow();
    ASSERT_TRUE(Calendar().isVisible());
    ClickDay(20);
    EXPECT_EQ(Picker().date(), QDate(2026, 3, 20));
    EXPECT_TRUE(IsChanged());
    EXPECT_EQ(Notice(), u"The date counts once the field has been entered with the keyboard."_s);
    GoTo("txtCustomer");
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Notice(), QString());
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 3, 20));
}

TEST_F(DatePicker, TheCalendarOpensFromTheKeyboardAndEscClosesItAlone)
{
    StartWithAnEntry();
    for (const bool alt : {true, false}) {
        Press(alt ? Qt::Key_Down : Qt::Key_F4, alt ? Qt::AltModifier : Qt::NoModifier);
        ASSERT_TRUE(Calendar().isVisible());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        LetEventsRun();
        EXPECT_FALSE(Calendar().isVisible());
        EXPECT_TRUE(Window().isVisible());
        EXPECT_EQ(Picker().date(), Today);
        EXPECT_FALSE(IsChanged());
    }
    Press(Qt::Key_F4);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    LetEventsRun();
    EXPECT_FALSE(Calendar().isVisible());
    EXPECT_EQ(Picker().date(), Today) << "a day that was only looked at";
    EXPECT_FALSE(IsChanged());
    Press(Qt::Key_F4);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    LetEventsRun();
    EXPECT_FALSE(Calendar().isVisible());
    EXPECT_EQ(Picker().date(), Today.addDays(1));
    EXPECT_TRUE(IsChanged());
    EXPECT_EQ(Focused(), u"dtpDate"_s);
}

TEST_F(DatePicker, DigitsTypedInACalendarThatHasClosedChangeNoDate)
{
    StartWithAnEntry();
    constexpr int delay = 20; // milliseconds, until the calendar would go to the day
    Calendar().setDateEditAcceptDelay(delay);
    Press(Qt::Key_F4);
    ASSERT_TRUE(Calendar().isVisible());
    for (const Qt::Key digit : {Qt::Key_2, Qt::Key_0})
        QTest::keyClick(QApplication::focusWidget(), digit);
    Calendar().window()->close(); // as a click beside it does
    EXPECT_FALSE(
        QTest::qWaitFor([this] { return Picker().date() != Today || IsChanged(); }, 10 * delay));
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Date.date(), Today);
}

// A stored entry without a date

TEST_F(DatePicker, AnEntryStoredWithoutADateShowsTodayAndStoresIt)
{
    Company.Entries->push_back(
        SampleEntry(u"0100"_s, {}, u"CONS"_s, QDate(2026, 1, 5), Currency::FromWhole(1)));
    Company.Entries->push_back(SampleEntry(u"0100"_s, {}, u"CONS"_s, {}, Currency::FromWhole(2)));
    Start();
    ClickRow(1);
    ASSERT_EQ(Picker().date(), QDate(2026, 1, 5));
    ClickRow(2);
    EXPECT_EQ(Picker().date(), Today) << "not the date of the entry before";
    EXPECT_EQ(
        Notice(), u"This entry was stored without a date. OK stores the date that is shown."_s);
    EXPECT_FALSE(IsChanged());
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[1].Date, QDateTime(Today, QTime(0, 0), Qt::UTC));
    EXPECT_EQ(Stored()[0].Date.date(), QDate(2026, 1, 5));
    EXPECT_EQ(Notice(), QString());
    ClickRow(2);
    EXPECT_EQ(Notice(), QString());
}
