// What the window says without being asked to, and without taking the focus: why a code was put
// back, why a field is closed, where the rate has come from, and that there is something to save.

#include "platform/PlainToolTip.h"
#include "tests/entry/EntryWindow.h"

#include <QAccessible>
#include <QStatusBar>

using namespace Qt::StringLiterals;
using testing::IsEmpty;

namespace {

class QuietAnswers : public EntryWindow
{
protected:
    QuietAnswers()
    {
        Company.Options.Billing_Option_Switch = u"Y"_s;
        Company.Options.Billing_Option_Setting = u"1"_s;
        Company.Employee.Rate_Permission = u"4"_s;
    }

    QString Notice() { return Control<QStatusBar>(Window(), "StatusBar1").currentMessage(); }
    QString ToolTip(const char *name) { return Any(name).toolTip(); }
    void TypeCode(const char *box, const QString &code)
    {
        GoTo(box);
        Type(code);
    }
    void EnterCodes()
    {
        TypeCode("txtCustomer", u"0100"_s);
        Press(Qt::Key_Return);
        TypeCode("txtActivity", u"CONS"_s);
        Press(Qt::Key_Return);
    }
    void LeaveRatesTo(Currency customer)
    {
        for (CustomerRecord &record : Company.Customers)
            record.Rate = customer;
        for (ActivityRecord &record : Company.Activities)
            record.Rate = Currency();
    }
};

} // namespace

TEST_F(QuietAnswers, ACodeThatIsPutBackIsNamedAtTheBottomAndSaid)
{
    Start();
    GoTo("txtCustomer");
    Type(u"0100"_s);
    Press(Qt::Key_Return);
    TypeCode("txtCustomer", u"ABD"_s);
    EXPECT_EQ(Notice(), QString()) << "not while it is typed";
    Press(Qt::Key_Return);
    EXPECT_EQ(Text("txtCustomer"), u"0100"_s);
    EXPECT_EQ(Notice(), u"No customer ABD."_s);
    QAccessibleInterface *spoken
        = QAccessible::queryAccessibleInterface(&Control<QStatusBar>(Window(), "StatusBar1"));
    ASSERT_NE(spoken, nullptr);
    EXPECT_EQ(spoken->text(QAccessible::Name), u"No customer ABD."_s);
    EXPECT_EQ(spoken->role(), QAccessible::StatusBar);
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Box("txtCustomer").selectedText(), u"0100"_s);
    EXPECT_THAT(Messages.Texts(), IsEmpty());
    EXPECT_EQ(Panel(1), u"Found 0 records"_s);
}

TEST_F(QuietAnswers, TheNoticeGoesWithTheNextKeyOrTheNextField)
{
    Start();
    TypeCode("txtActivity", u"NONE"_s);
    Press(Qt::Key_Tab);
    EXPECT_EQ(Notice(), u"No activity NONE."_s);
    EXPECT_EQ(Focused(), u"txtActivity"_s);
    Type(u"C"_s);
    EXPECT_EQ(Notice(), QString());
    Type(u"X"_s);
    Press(Qt::Key_Backtab, Qt::ShiftModifier);
    EXPECT_EQ(Notice(), u"No activity CX."_s);
    Press(Qt::Key_Backtab, Qt::ShiftModifier); // nothing was typed since
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Notice(), QString());
    EXPECT_TRUE(Any("Panel1").isVisible());
}

TEST_F(QuietAnswers, APressElsewhereKeepsTheNoticeWithTheRefusedCode)
{
    Start();
    TypeCode("txtCustomer", u"ABD"_s);
    ClickButton("txtDescription");
    EXPECT_EQ(Focused(), u"txtCustomer"_s);
    EXPECT_EQ(Notice(), u"No customer ABD."_s);
}

TEST_F(QuietAnswers, EachCodeIsNamedInTheCompanysWords)
{
    Company.Options.Customer_Term = u"Client"_s;
    Company.Options.Project_Term = u"Job"_s;
    Start();
    TypeCode("txtCustomer", u"0100"_s);
    Press(Qt::Key_Return);
    TypeCode("txtProject", u"NONE"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Notice(), u"No job NONE for client 0100."_s);
    TypeCode("txtMultiplierCode", u"7"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(Notice(), u"No multiplier 07."_s);
}

TEST_F(QuietAnswers, ANumberThatDoesNotFitIsPutBackAndSaysWhatWould)
{
    Start();
    TypeCode("txtHours", u"123"_s);
    EXPECT_EQ(Text("txtHours"), u"12"_s);
    EXPECT_EQ(Notice(), u"A number with up to 2 digits before the point and 2 after it."_s);
    Type(u"."_s);
    EXPECT_EQ(Notice(), QString());
}

TEST_F(QuietAnswers, TheTitleIsMarkedWhileThereIsSomethingToSave)
{
    Start();
    EXPECT_EQ(Window().windowTitle(), u"Worklog Remote"_s);
    EXPECT_FALSE(Window().isWindowModified());
    GoTo("txtDescription");
    Type(u"x"_s);
    EXPECT_TRUE(Window().isWindowModified());
    EXPECT_EQ(Window().windowTitle(), u"Worklog Remote[*]"_s) << "the platform's mark has a place";
    EXPECT_EQ(Focused(), u"txtDescription"_s);
    ClickButton("cmdUndo");
    EXPECT_FALSE(Window().isWindowModified());
    EXPECT_EQ(Window().windowTitle(), u"Worklog Remote"_s);
}

TEST_F(QuietAnswers, TheRatesToolTipSaysWhereItHasComeFrom)
{
    LeaveRatesTo(Currency::FromWhole(50));
    for (ProjectRecord &project : Company.Projects)
        project.Rate = Currency();
    Start();
    EnterCodes();
    ASSERT_EQ(Text("txtRate"), u"50.000"_s);
    EXPECT_EQ(ToolTip("txtRate"), u"The rate of the customer."_s);
    TypeCode("txtRate", u"80"_s);
    Press(Qt::Key_Return);
    EXPECT_EQ(ToolTip("txtRate"), u"The rate was typed."_s);
    EXPECT_EQ(Any("txtRate").accessibleDescription(), u"The rate was typed."_s);
}

TEST_F(QuietAnswers, AClosedRateSaysBoth)
{
    Company.Employee.Rate_Permission = u"3"_s;
    Company.Employee.Rate = Currency::FromWhole(40);
    Company.Divisions.clear();
    LeaveRatesTo(Currency());
    Start();
    EnterCodes();
    EXPECT_FALSE(Any("txtRate").isEnabled());
    EXPECT_EQ(ToolTip("txtRate"),
        u"The rate of the %1.\nYour rate permission does not cover it."_s.arg(
            Company.Options.Employee_Term.toLower()));
}

TEST_F(QuietAnswers, EveryClosedFieldSaysWhyInEveryState)
{
    Company.Options.On_Hold_In_Use = u"Y"_s;
    Company.Options.Mgmt_Approval_In_Use = u"Y"_s;
    Company.Options.Lock_Approved = u"Y"_s;
    Company.Employee.Mgmt_Approver = u"Y"_s;
    Company.Employee.Approval = u"N"_s;
    Company.Employee.Rate_Permission = u"3"_s;
    Company.Activities.push_back(SampleExpense(u"MEALS"_s, u"Meals"_s, Currency::FromWhole(1)));
    const QDate monday(2026, 3, 9);
    const EntryRecord time = SampleEntry(u"0100"_s, {}, u"CONS"_s, monday, Currency::FromWhole(1));
    EntryRecord approved = time;
    approved.Mgmt_Approval = u"JMS"_s;
    EntryRecord onHold = time;
    onHold.On_Hold = u"Y"_s;
    EntryRecord notBilled = time;
    notBilled.Billing_Status = u"3"_s;
    EntryRecord expense = time;
    expense.Activity_Number = u"MEALS"_s;
    Company.Entries = std::vector{time, approved, onHold, notBilled, expense};
    Start();
    int closed = 0;
    const auto look = [&](int state) {
        for (const QWidget *control : Window().findChildren<QWidget *>()) {
            const auto *box = qobject_cast<const QLineEdit *>(control);
            // A project before its customer is open to the mouse alone.
            const bool isClosed = !control->isEnabled()
                || (box != nullptr
                    && (box->isReadOnly() || (box->focusPolicy() & Qt::TabFocus) == 0));
            const QString name = control->objectName();
            const bool isOurs = name.startsWith(u"txt"_s) || name.startsWith(u"cbo"_s)
                || name.startsWith(u"chk"_s) || name.startsWith(u"cmd"_s)
                || name.startsWith(u"dtp"_s) || name.startsWith(u"msg"_s);
            if (!isOurs || !control->isVisible())
                continue;
            closed += isClosed ? 1 : 0;
            const QString why = control->toolTip().section(u'\n', -1);
            const bool isReason = !why.isEmpty() && !why.startsWith(u"The rate of"_s)
                && !why.startsWith(u"The unit cost"_s);
            EXPECT_EQ(isReason, isClosed)
                << name.toStdString() << " in state " << state << ": " << why.toStdString();
        }
    };
    look(0);
    for (int row = 1; row <= 5; ++row) {
        ClickRow(row);
        look(row);
    }
    EXPECT_GT(closed, 20);
}

TEST_F(QuietAnswers, ALockedWindowSaysWhatToDo)
{
    Program = std::make_unique<clsProgram>(
        Folder.path(), ProgramServices{Messages, Keys, Process, Clock, Settings, Browser});
    Program->StartUp();
    for (const char *name : {"txtCustomer", "cboCompany", "cmdOK", "msgEntryList", "txtRate"})
        EXPECT_EQ(ToolTip(name), u"There is no data yet: synchronise first."_s) << name;
}

TEST(PlainToolTip, ShowsWhatLooksLikeMarkupAsItIs)
{
    EXPECT_EQ(PlainToolTip(u"A & B"_s), u"A & B"_s);
    EXPECT_EQ(PlainToolTip(u"<b>A</b> & B"_s), u"<span>&lt;b&gt;A&lt;/b&gt; &amp; B</span>"_s);
    EXPECT_EQ(PlainToolTip(QString()), QString());
}
