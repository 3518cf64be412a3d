// Long and odd texts of a company: they fit, they are shown as they are, and what has no room can
// be read all the same.

#include "platform/clsElidedLabel.h"
#include "platform/clsWindowMessageBox.h"
#include "tests/support/Modal.h"
#include "tests/windows/EveryWindow.h"

#include <QAbstractItemView>
#include <QHelpEvent>
#include <QMessageBox>
#include <QToolTip>

using namespace Qt::StringLiterals;

namespace {

/// The smallest screen that is worked at: 1366 x 768 at 150 %, less a title bar and a task bar.
constexpr QSize SmallScreen(910, 512 - 60);

class Texts : public EveryWindow
{
protected:
    ~Texts() override { QToolTip::hideText(); }

    /// What the mouse is told when it rests there; empty when nothing is.
    QString Tip(QWidget &widget, QPoint at)
    {
        QToolTip::hideText();
        EXPECT_TRUE(QTest::qWaitFor([] { return !QToolTip::isVisible(); }));
        QHelpEvent rest(QEvent::ToolTip, at, widget.mapToGlobal(at));
        QApplication::sendEvent(&widget, &rest);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }
    QString TipOfCell(int row, int column)
    {
        return Tip(
            *Grid().viewport(), Grid().visualRect(Grid().model()->index(row - 1, column)).center());
    }
    QString TipOfHeading(int column)
    {
        QHeaderView &header = *Grid().horizontalHeader();
        return Tip(
            *header.viewport(), {header.sectionViewportPosition(column) + 5, header.height() / 2});
    }
};

const QString Term = u"The customer as it is called in Group 12"_s;
const QString Markup = u"<b>A</b> &amp; <img src=x> Sons of a rather long name"_s;

} // namespace

TEST_F(Texts, EveryWindowFitsASmallScreenWithTermsOfFortyCharacters)
{
    ASSERT_EQ(Term.size(), 40);
    Company.Name = Term;
    Company.Options.Customer_Term = Term;
    Company.Options.Project_Term = Term;
    Company.Options.Activity_Term = Term;
    Company.Options.Employee_Term = Term;
    Company.Employee.Employee_Name = Term;
    InEvery([](const std::string &name, QWidget &window) {
        const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
        EXPECT_LE(least.width(), SmallScreen.width()) << name;
        EXPECT_LE(least.height(), SmallScreen.height()) << name;
        if (name.rfind("frmEntryList", 0) == 0) {
            EXPECT_LE(window.width(), SmallScreen.width()) << name;
        }
        for (const QLabel *label : window.findChildren<QLabel *>()) {
            if (label->isVisible() && !label->text().isEmpty()
                && qobject_cast<const clsElidedLabel *>(label) == nullptr && !label->wordWrap()
                && label->pixmap().isNull()) {
                EXPECT_GE(label->width(), label->minimumSizeHint().width())
                    << name << ": " << label->objectName().toStdString();
            }
        }
    });
}

TEST_F(Texts, ATermWithoutRoomIsCutWithDotsAndReadAsAWholeByTheMouse)
{
    Company.Options.Customer_Term = Term;
    Start();
    Window().resize(Window().minimumSizeHint());
    LetEventsRun();
    auto &label = Control<QLabel>(Window(), "lblCustomer");
    EXPECT_EQ(label.text(), Term);
    EXPECT_LT(label.width(), label.sizeHint().width());
    EXPECT_EQ(Tip(label, label.rect().center()), Term);
    auto &project = Control<QLabel>(Window(), "lblProject");
    EXPECT_EQ(Tip(project, project.rect().center()), QString()) << "it has room";
}

TEST_F(Texts, AClippedCellIsReadAsAWholeByTheMouse)
{
    for (CustomerRecord &customer : Company.Customers) {
        customer.Customer_Name = customer.Customer_Number == u"0100"_s
            ? u"A name that is longer than its column"_s
            : u"Short"_s;
    }
    Company.Entries->push_back(
        SampleEntry(u"0200"_s, {}, u"CONS"_s, QDate(2026, 3, 9), Currency::FromWhole(1)));
    Start();
    EXPECT_EQ(TipOfCell(1, 3), u"A name that is longer than its column"_s);
    EXPECT_EQ(TipOfCell(3, 3), QString());
    EXPECT_EQ(TipOfCell(1, 2), QString());
    EXPECT_EQ(TipOfHeading(3), QString());
}

TEST_F(Texts, AClippedHeadingIsReadAsAWholeByTheMouse)
{
    Company.Options.Customer_Term = Term;
    Start();
    EXPECT_EQ(TipOfHeading(3), Term);
    EXPECT_EQ(TipOfHeading(4), QString());
}

TEST_F(Texts, AClippedChoiceIsReadAsAWholeByTheMouseAndInTheOpenedList)
{
    Company.Options.Customer_Term = Term;
    Start();
    ClickRow(1); // at the customer's rate
    QComboBox &list = List("cboBOption");
    ASSERT_EQ(list.currentText(), Term);
    EXPECT_EQ(list.toolTip(), Term);
    EXPECT_GE(list.view()->minimumWidth(), list.fontMetrics().horizontalAdvance(Term));
    EXPECT_EQ(List("cboBStatus").toolTip(), QString());
}

TEST_F(Texts, ATipShowsMarkupAsItIs)
{
    for (CustomerRecord &customer : Company.Customers)
        customer.Customer_Name = Markup;
    Start();
    const QString tip = TipOfCell(1, 3);
    EXPECT_EQ(tip, u"<span>"_s + Markup.toHtmlEscaped() + u"</span>"_s);
}

TEST_F(Texts, NamesWithMarkupAreShownAsTheyAreEverywhere)
{
    Company.Name = Markup;
    Company.Options.Customer_Term = Markup;
    Company.Options.Accounting_Name = Markup;
    Company.Employee.Employee_Name = Markup;
    for (CustomerRecord &customer : Company.Customers)
        customer.Customer_Name = Markup;
    InEvery([](const std::string &name, QWidget &window) {
        int labels = 0;
        for (const QLabel *label : window.findChildren<QLabel *>()) {
            if (!label->isVisible() || label->text().isEmpty())
                continue;
            ++labels;
            const bool isPlain = label->textFormat() == Qt::PlainText
                || (label->textFormat() == Qt::AutoText && !Qt::mightBeRichText(label->text()));
            EXPECT_TRUE(isPlain) << name << ": " << label->objectName().toStdString() << ' '
                                 << label->text().toStdString();
        }
        for (const QWidget *control : window.findChildren<QWidget *>()) {
            const QString tip = control->toolTip();
            EXPECT_TRUE(!tip.contains(u"<b>"_s)) << name << ": " << tip.toStdString();
        }
        EXPECT_GE(labels + window.findChildren<QAbstractButton *>().size(), 1) << name;
    });
}

TEST_F(Texts, AMessageShowsMarkupAsItIs)
{
    Start();
    clsWindowMessageBox messages;
    WithModal([&] { messages.Tell(u"Invalid "_s + Markup + u" Code."_s); },
        [](QWidget &box) {
            EXPECT_EQ(static_cast<QMessageBox &>(box).textFormat(), Qt::PlainText);
            QTest::keyClick(&box, Qt::Key_Escape);
        });
}

TEST_F(Texts, NumbersStandAtTheRightAndHaveRoomForTheLongest)
{
    Start();
    const QMap<QString, QString> longest = {{u"txtHours"_s, u"99999.99"_s},
        {u"txtRate"_s, u"99999.999"_s}, {u"txtAmount"_s, u"99999999.99"_s},
        {u"txtMultiplierFactor"_s, u"99999.9999"_s}, {u"txtMultiplierCode"_s, u"99"_s},
        {u"txtCustomer"_s, u"123456789ABCDEF"_s}, {u"txtProject"_s, u"123456789ABCDEF"_s},
        {u"txtActivity"_s, u"123456789ABCDEF"_s}, {u"txtUser"_s, u"WWW"_s}};
    constexpr int innerMargins = 2 * 2 + 1; // the widget set's own, and the caret
    for (auto one = longest.begin(); one != longest.end(); ++one) {
        QLineEdit &box = Box(qPrintable(one.key()));
        QStyleOptionFrame option;
        option.initFrom(&box);
        option.lineWidth = box.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &box);
        const int room
            = box.style()->subElementRect(QStyle::SE_LineEditContents, &option, &box).width();
        EXPECT_GE(room - innerMargins, box.fontMetrics().horizontalAdvance(one.value()))
            << one.key().toStdString();
    }
    for (const char *name : {"txtHours", "txtRate", "txtAmount", "txtMultiplierFactor"})
        EXPECT_TRUE(Box(name).alignment().testFlag(Qt::AlignRight)) << name;
}

TEST_F(Texts, EveryCaptionLeadsToItsField)
{
    InEvery([](const std::string &name, QWidget &window) {
        for (const QWidget *control : FocusChain(window)) {
            const auto *box = qobject_cast<const QLineEdit *>(control);
            const auto *list = qobject_cast<const QComboBox *>(control);
            if ((box == nullptr && list == nullptr) || control->objectName().startsWith(u"qt_"_s))
                continue;
            bool isLed = !control->accessibleName().isEmpty();
            for (const QLabel *label : window.findChildren<QLabel *>())
                isLed = isLed || label->buddy() == control;
            EXPECT_TRUE(isLed) << name << ": " << control->objectName().toStdString();
        }
    });
}
