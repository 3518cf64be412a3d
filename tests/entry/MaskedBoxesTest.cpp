// The masks of the hours, units and rate boxes under a user's hands: typing, pasting, deleting and
// dropping text.

#include "tests/entry/EntryWindow.h"

#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class MaskedBoxes : public EntryWindow
{
protected:
    MaskedBoxes() { Company.Employee.Rate_Permission = u"4"_s; }

    void EnterCode(const char *box, const QString &code)
    {
        GoTo(box);
        Type(code);
        Press(Qt::Key_Return);
    }

    /// A billable entry of that activity, the focus in its hours or units.
    void StartWith(const QString &activity)
    {
        Start();
        EnterCode("txtCustomer", u"0100"_s);
        EnterCode("txtActivity", activity);
        ASSERT_EQ(Focused(), u"txtHours"_s);
    }

    /// As a user empties a box.
    void Empty()
    {
        Press(Qt::Key_A, Qt::ControlModifier);
        Press(Qt::Key_Delete);
    }

    void Paste(const QString &text)
    {
        QGuiApplication::clipboard()->setText(text);
        Press(Qt::Key_V, Qt::ControlModifier);
    }

    enum class Place
    {
        Front,
        End
    };

    /// Text from elsewhere is let go over the box.
    void Drop(const char *name, const QString &text, Place place)
    {
        QLineEdit &box = Box(name);
        QMimeData dragged;
        dragged.setText(text);
        const bool leftAligned = !(box.alignment() & Qt::AlignRight);
        const bool atLeftEdge = (place == Place::Front) || (leftAligned && box.text().isEmpty());
        const QPoint where(atLeftEdge ? 1 : box.width() - 2, box.height() / 2);
        QDragEnterEvent enter(where, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&box, &enter);
        QDropEvent drop(where, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(&box, &drop);
        LetEventsRun();
    }

    void ExpectChanged(bool changed) { EXPECT_EQ(Window().isWindowModified(), changed); }

    void ExpectBox(const char *name, const QString &text, int caret)
    {
        EXPECT_EQ(Text(name), text);
        EXPECT_EQ(Box(name).cursorPosition(), caret);
    }
};

} // namespace

TEST_F(MaskedBoxes, HoursOfTimeTakeTwoDigits)
{
    StartWith(u"CONS"_s);
    Type(u"123"_s);
    ExpectBox("txtHours", u"12"_s, 2);
    Type(u".345"_s);
    ExpectBox("txtHours", u"12.34"_s, 5);
}

TEST_F(MaskedBoxes, UnitsOfAnExpenseTakeFiveDigits)
{
    StartWith(u"MILES"_s);
    Type(u"123456"_s);
    ExpectBox("txtHours", u"12345"_s, 5);
    Empty();
    Type(u"1,2345"_s);
    ExpectBox("txtHours", u"1,234"_s, 5);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtHours"), u"1234.00"_s);
}

TEST_F(MaskedBoxes, ARateTakesFiveDigitsAndThreeDecimals)
{
    StartWith(u"CONS"_s);
    GoTo("txtRate");
    Type(u"1.2345"_s);
    ExpectBox("txtRate", u"1.234"_s, 5);
    Empty();
    Type(u"123456"_s);
    ExpectBox("txtRate", u"12345"_s, 5);
}

TEST_F(MaskedBoxes, ASecondPointDisappears)
{
    StartWith(u"CONS"_s);
    Type(u"1..2"_s);
    ExpectBox("txtHours", u"1.2"_s, 3);
    Empty();
    Type(u"1.2.3"_s);
    ExpectBox("txtHours", u"1.23"_s, 4);
}

TEST_F(MaskedBoxes, ALonePointStaysAndBecomesZeroHours)
{
    StartWith(u"CONS"_s);
    Type(u"."_s);
    ExpectBox("txtHours", u"."_s, 1);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtHours"), u".00"_s);
}

TEST_F(MaskedBoxes, ALonePointAsARateGivesWayToTheRateBefore)
{
    StartWith(u"CONS"_s);
    GoTo("txtRate");
    Type(u"."_s);
    ExpectBox("txtRate", u"."_s, 1);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtRate"), u"90.000"_s);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(MaskedBoxes, ALetterTurnsTheBoxIntoZero)
{
    StartWith(u"CONS"_s);
    Empty();
    Type(u"x"_s);
    ExpectBox("txtHours", u".00"_s, 0);
    GoTo("txtRate");
    Type(u"12x"_s);
    ExpectBox("txtRate", u".000"_s, 2);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
}

TEST_F(MaskedBoxes, ADigitTypedInFrontIsRefusedWhereItWasTyped)
{
    StartWith(u"CONS"_s);
    Type(u"12.5"_s);
    Press(Qt::Key_Home);
    Type(u"3"_s);
    ExpectBox("txtHours", u"12.5"_s, 0);
}

TEST_F(MaskedBoxes, PastedTextIsTakenOrRefusedWhole)
{
    StartWith(u"CONS"_s);
    Empty();
    Paste(u"7.25"_s);
    ExpectBox("txtHours", u"7.25"_s, 4);
    Paste(u"5"_s);
    ExpectBox("txtHours", u"7.25"_s, 4);
    Press(Qt::Key_A, Qt::ControlModifier);
    Paste(u"123"_s);
    EXPECT_EQ(Text("txtHours"), u"7.25"_s);
    Press(Qt::Key_A, Qt::ControlModifier);
    Paste(u"n/a"_s); // three characters are too many for hours
    EXPECT_EQ(Text("txtHours"), u"7.25"_s);
    Press(Qt::Key_A, Qt::ControlModifier);
    Paste(u"no"_s);
    EXPECT_EQ(Text("txtHours"), u".00"_s);
}

TEST_F(MaskedBoxes, TextPastedIntoAnEmptyBoxAndRefusedLeavesItEmpty)
{
    StartWith(u"CONS"_s);
    Empty();
    Paste(u"12345"_s);
    ExpectBox("txtHours", QString(), 0);
}

TEST_F(MaskedBoxes, DeletingThePointOfTooLongANumberIsRefused)
{
    StartWith(u"CONS"_s);
    Type(u"12.34"_s);
    Press(Qt::Key_Home);
    Press(Qt::Key_Right);
    Press(Qt::Key_Right);
    Press(Qt::Key_Delete);
    ExpectBox("txtHours", u"12.34"_s, 1);
    Press(Qt::Key_End);
    Press(Qt::Key_Backspace);
    ExpectBox("txtHours", u"12.3"_s, 4);
    Press(Qt::Key_X, Qt::ControlModifier); // nothing is selected
    EXPECT_EQ(Text("txtHours"), u"12.3"_s);
    Press(Qt::Key_A, Qt::ControlModifier);
    Press(Qt::Key_X, Qt::ControlModifier);
    ExpectBox("txtHours", QString(), 0);
}

TEST_F(MaskedBoxes, TextDroppedIntoTheBoxIsMaskedToo)
{
    StartWith(u"CONS"_s);
    Type(u"5"_s);
    Drop("txtHours", u"1"_s, Place::Front);
    EXPECT_EQ(Text("txtHours"), u"15"_s);
    Drop("txtHours", u".5"_s, Place::End);
    EXPECT_EQ(Text("txtHours"), u"15.5"_s);
    Drop("txtHours", u"1"_s, Place::Front);
    EXPECT_EQ(Text("txtHours"), u"15.5"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtHours"), u"15.50"_s);
    EXPECT_EQ(Text("txtAmount"), u"1395.00"_s);
}

TEST_F(MaskedBoxes, HoursFromElsewhereThatBreakTheMaskStandUntilTheyAreEdited)
{
    EntryRecord record = SampleEntry(
        u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(1234));
    Company.Entries = {record};
    Start();
    ClickRow(1);
    EXPECT_EQ(Text("txtHours"), u"1234.00"_s);
    GoTo("txtHours");
    Press(Qt::Key_End);
    Type(u"5"_s);
    ExpectBox("txtHours", u"1234.00"_s, 7);
    Press(Qt::Key_Home);
    Press(Qt::Key_Delete);
    EXPECT_EQ(Text("txtHours"), u"1234.00"_s); // 234.00 is too long as well
}

TEST_F(MaskedBoxes, TheMaskIsThatOfTheKindAsTheBoxIsEntered)
{
    StartWith(u"MILES"_s);
    Type(u"12345"_s);
    EXPECT_EQ(Text("txtHours"), u"12345"_s);
    EnterCode("txtActivity", u"CONS"_s);
    ASSERT_EQ(Focused(), u"txtHours"_s);
    Type(u"12345"_s);
    EXPECT_EQ(Text("txtHours"), u"12"_s);
}

TEST_F(MaskedBoxes, UnitsThatAreNoPossibleHoursDoNotBecomeHours)
{
    StartWith(u"MILES"_s);
    Type(u"250"_s);
    EnterCode("txtActivity", u"CONS"_s);
    EXPECT_EQ(Text("txtHours"), u".00"_s);
    ClickButton("cmdOK");
    EXPECT_THAT(Messages.Texts(), ElementsAre(u"Invalid Hours."_s));
    EXPECT_THAT(Stored(), IsEmpty());
    Type(u"7.5"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Hours, Currency::FromScaled(75000));
}

TEST_F(MaskedBoxes, UnitsThatArePossibleHoursBecomeHours)
{
    StartWith(u"MILES"_s);
    Type(u"12.5"_s);
    EnterCode("txtActivity", u"CONS"_s);
    EXPECT_EQ(Text("txtHours"), u"12.50"_s);
}

TEST_F(MaskedBoxes, HoursFromElsewhereStayWhenTheActivityIsStillTime)
{
    Company.Entries = {SampleEntry(
        u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(1234))};
    Start();
    ClickRow(1);
    EnterCode("txtActivity", u"TRAIN"_s);
    EXPECT_EQ(Text("txtHours"), u"1234.00"_s);
}

TEST_F(MaskedBoxes, TheAmountIsShownAndNotEdited)
{
    StartWith(u"MILES"_s);
    Type(u"10"_s);
    GoTo("txtAmount");
    Type(u"5"_s);
    Paste(u"7"_s);
    Drop("txtAmount", u"7"_s, Place::Front);
    EXPECT_EQ(Text("txtAmount"), u"4.50"_s);
}

TEST_F(MaskedBoxes, TextDroppedIntoABoxWithoutTheFocusGivesItTheFocus)
{
    StartWith(u"CONS"_s);
    GoTo("txtCustomer");
    Drop("txtHours", u"7"_s, Place::Front);
    EXPECT_EQ(Text("txtHours"), u"7.00"_s);
    EXPECT_EQ(Focused(), u"txtHours"_s);
    Drop("txtRate", u"no number"_s, Place::End);
    EXPECT_EQ(Text("txtRate"), u"90.000"_s);
    EXPECT_EQ(Text("txtAmount"), u"630.00"_s); // the hours have been left
}

TEST_F(MaskedBoxes, ACodeDroppedIntoItsBoxIsCheckedLikeATypedOne)
{
    StartWith(u"CONS"_s);
    Type(u"2"_s);
    GoTo("txtCustomer");
    Press(Qt::Key_Delete); // the customer is selected
    GoTo("txtDescription");
    Drop("txtCustomer", u"0200"_s, Place::Front);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Customer_Number, u"0200"_s);
}

TEST_F(MaskedBoxes, ACodeDroppedFromAnotherWindowIsCheckedToo)
{
    StartWith(u"CONS"_s);
    GoTo("txtActivity");
    QWidget other;
    ASSERT_TRUE(ShowActive(other));
    Drop("txtProject", u"none"_s, Place::Front);
    EXPECT_EQ(Text("txtProject"), u"NONE"_s);
    ASSERT_TRUE(ShowActive(Window()));
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtProject"), QString());
    EXPECT_EQ(Focused(), u"txtProject"_s);
}

TEST_F(MaskedBoxes, WhileACodeIsRefusedNothingCanBeDroppedElsewhere)
{
    StartWith(u"CONS"_s);
    GoTo("txtCustomer");
    Type(u"NONE"_s);
    Drop("txtHours", u"7"_s, Place::Front);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Text("txtCustomer"), u"0100"_s);
    EXPECT_EQ(Text("txtHours"), u".00"_s);
    GoTo("txtActivity");
    Type(u"NONE"_s);
    Drop("txtProject", u"AUDIT"_s, Place::Front);
    EXPECT_EQ(Focused(), u"txtActivity"_s);
    EXPECT_EQ(Text("txtProject"), QString());
}

TEST_F(MaskedBoxes, NothingIsDroppedIntoABoxThatLeavingTheOtherOneCloses)
{
    StartWith(u"CONS"_s);
    GoTo("txtActivity");
    Type(u"TRAIN"_s); // not charged
    Drop("txtRate", u"7"_s, Place::Front);
    EXPECT_FALSE(Box("txtRate").isEnabled());
    EXPECT_EQ(Text("txtRate"), u".000"_s);
    EXPECT_EQ(List("cboBStatus").currentText(), u"No Charge"_s);
}

TEST_F(MaskedBoxes, WhatTheProgramWritesIntoTheBoxIsGood)
{
    StartWith(u"CONS"_s);
    Type(u"0"_s);
    Messages.Answers = {MessageAnswer::Yes};
    Press(Qt::Key_Escape);
    EXPECT_THAT(
        Messages.Texts(), ElementsAre(u"Do you want to save changes?"_s, u"Invalid Hours."_s));
    ASSERT_EQ(Focused(), u"txtHours"_s);
    ASSERT_EQ(Text("txtHours"), u".00"_s);
    Press(Qt::Key_End);
    Type(u"5"_s);
    ExpectBox("txtHours", u".00"_s, 3);
}

TEST_F(MaskedBoxes, PassingThroughTheBoxesIsNoEdit)
{
    EntryRecord record = SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2),
        Currency::FromScaled(12345), Currency::FromScaled(333333));
    record.Billing_Option = u"6"_s;
    Company.Entries = {record};
    Start();
    ClickRow(1);
    for (const char *box : {"txtCustomer", "txtProject", "txtActivity", "txtMultiplierCode",
             "txtHours", "txtRate", "txtAmount", "txtDescription"}) {
        GoTo(box);
        ASSERT_EQ(Focused(), QString::fromLatin1(box));
    }
    Press(Qt::Key_Escape);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_EQ(Stored()[0].Hours, record.Hours);
}

TEST_F(MaskedBoxes, PassingThroughTheRateKeepsTheRateAndTheMultiplier)
{
    Company.Multipliers = {SampleMultiplier(u"05"_s, u"Evening"_s, Currency::FromScaled(12500))};
    StartWith(u"CONS"_s);
    EnterCode("txtMultiplierCode", u"05"_s);
    ASSERT_EQ(Text("txtRate"), u"112.500"_s);
    GoTo("txtRate");
    Press(Qt::Key_Return);
    GoTo("txtDescription");
    EXPECT_EQ(Text("txtMultiplierCode"), u"05"_s);
    EXPECT_EQ(Text("txtRate"), u"112.500"_s);
}

TEST_F(MaskedBoxes, PassingThroughTheLockedAmountKeepsItsDecimals)
{
    StartWith(u"CONS"_s);
    Type(u".25"_s);
    GoTo("txtRate");
    Type(u"33.333"_s);
    GoTo("txtAmount");
    EXPECT_EQ(Text("txtAmount"), u"8.33"_s);
    GoTo("txtDescription");
    ClickButton("cmdOK");
    ASSERT_EQ(Stored().size(), 1U);
    EXPECT_EQ(Stored()[0].Amount, Currency::FromScaled(83332));
}

TEST_F(MaskedBoxes, ARefusedKeyIsNoEdit)
{
    EntryRecord record = SampleEntry(u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2),
        Currency::FromWhole(12), Currency::FromWhole(12345));
    record.Billing_Option = u"6"_s;
    record.Multiplier_Number = u"2"_s;
    record.Multiplier_Factor = Currency::FromScaled(15000);
    Company.Entries = {record};
    Start();
    ClickRow(1);
    for (const char *box : {"txtHours", "txtRate"}) {
        GoTo(box);
        const QString shown = Text(box);
        Press(Qt::Key_End);
        Type(u"5"_s); // one decimal too many
        EXPECT_EQ(Text(box), shown);
        Type(u"."_s); // a second point
        EXPECT_EQ(Text(box), shown);
        ExpectChanged(false);
    }
    GoTo("txtDescription");
    EXPECT_EQ(Text("txtMultiplierCode"), u"2"_s);
    EXPECT_EQ(Text("txtRate"), u"18517.500"_s);
    ExpectChanged(false);
    EXPECT_FALSE(List("cboCompany").isEnabled()) << "a stored entry";
    ClickButton("cmdOK");
    EXPECT_EQ(Stored()[0].Rate, record.Rate);
    EXPECT_EQ(Stored()[0].Rate_Overridden, record.Rate_Overridden);
    EXPECT_EQ(Stored()[0].Multiplier_Number, u"2"_s);
}

TEST_F(MaskedBoxes, PastingWhatIsThereOrNothingIsNoEdit)
{
    EntryRecord record = SampleEntry(
        u"0100"_s, u"AUDIT"_s, u"CONS"_s, QDate(2026, 3, 2), Currency::FromWhole(1), {}, u"Text"_s);
    record.Billing_Option = u"6"_s;
    Company.Entries = {record};
    Start();
    ClickRow(1);
    for (const char *box :
        {"txtCustomer", "txtActivity", "txtHours", "txtRate", "txtDescription"}) {
        GoTo(box);
        Press(Qt::Key_A, Qt::ControlModifier);
        Paste(Text(box));
        Paste(QString());
        ExpectChanged(false);
    }
    GoTo("txtDescription");
    EXPECT_EQ(Stored()[0].Rate, record.Rate);
    Type(u"x"_s);
    ExpectChanged(true);
}

TEST_F(MaskedBoxes, ALetterOverZeroHoursIsNoEditAndOverOthersIsOne)
{
    Start();
    GoTo("txtHours");
    Type(u"x"_s);
    ExpectBox("txtHours", u".00"_s, 0);
    ExpectChanged(false);
    Press(Qt::Key_Delete);
    ExpectChanged(true);
}

namespace {

/// Where the system's decimal sign is a comma.
class CommaCountry : public MaskedBoxes
{
protected:
    CommaCountry() { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    ~CommaCountry() override
    {
        Program.reset();
        QLocale::setDefault(m_before);
    }

private:
    QLocale m_before;
};

} // namespace

TEST_F(CommaCountry, ATypedCommaIsTheDecimalPoint)
{
    StartWith(u"CONS"_s);
    Type(u"1,5"_s);
    ExpectBox("txtHours", u"1.5"_s, 3);
    Type(u","_s);
    ExpectBox("txtHours", u"1.5"_s, 3);
    GoTo("txtRate");
    EXPECT_EQ(Text("txtHours"), u"1.50"_s);
    Type(u"80,125"_s);
    ExpectBox("txtRate", u"80.125"_s, 6);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtAmount"), u"120.19"_s);
}

TEST_F(CommaCountry, APastedOrDroppedCommaIsTheDecimalPointToo)
{
    StartWith(u"MILES"_s);
    Empty();
    Paste(u"12,25"_s);
    ExpectBox("txtHours", u"12.25"_s, 5);
    Empty();
    Paste(u"1.234,5"_s); // two points: no number
    ExpectBox("txtHours", QString(), 0);
    Drop("txtHours", u",5"_s, Place::Front);
    EXPECT_EQ(Text("txtHours"), u".5"_s);
}

TEST_F(MaskedBoxes, WhereThePointIsTheDecimalSignACommaStaysAComma)
{
    StartWith(u"MILES"_s);
    Type(u"1,5"_s);
    ExpectBox("txtHours", u"1,5"_s, 3);
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtHours"), u"15.00"_s);
}
