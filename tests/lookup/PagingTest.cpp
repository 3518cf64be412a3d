// Through the whole list and back by every means; whatever is done, one row is selected.

#include "tests/lookup/LookupFixture.h"

#include <QStyle>
#include <QStyleOptionSlider>

#include <algorithm>

using namespace Qt::StringLiterals;
using testing::ElementsAre;

namespace {

constexpr int Counts[] = {1, 10, 11, 12, 100};

class Paging : public LookupFixture
{
protected:
    void InListOf(int count, const std::function<void()> &steps)
    {
        Company.Customers = NumberedCustomers(count);
        Start();
        LookUp(u"Customer"_s, [&] {
            steps();
            Press("msgLookup", Qt::Key_Escape);
        });
    }

    /// The selected record's index, which its code tells as well.
    int Selected()
    {
        const int index = Grid().TextMatrix(Grid().Row(), 0).toInt();
        EXPECT_EQ(SelectedCode(), u"C%1"_s.arg(index + 1, 3, 10, QChar(u'0')));
        return index;
    }

    void Press(Qt::Key key)
    {
        LookupFixture::Press("msgLookup", key);
        ExpectOneRowAndItsRecord();
    }
    using LookupFixture::Press;

    void ClickBar(QStyle::SubControl part)
    {
        QStyleOptionSlider option;
        option.initFrom(&Bar());
        option.subControls = QStyle::SC_All;
        option.orientation = Qt::Vertical;
        option.minimum = Bar().minimum();
        option.maximum = Bar().maximum();
        option.sliderPosition = option.sliderValue = Bar().value();
        option.pageStep = Bar().pageStep();
        const QRect place
            = Bar().style()->subControlRect(QStyle::CC_ScrollBar, &option, part, &Bar());
        QTest::mouseClick(&Bar(), Qt::LeftButton, {}, place.center());
        LetEventsRun();
    }
};

} // namespace

TEST_F(Paging, ArrowsGoThroughTheWholeListInBothDirections)
{
    for (const int count : Counts)
        InListOf(count, [&] {
            EXPECT_EQ(Selected(), 0);
            ExpectOneRowAndItsRecord();
            for (int i = 1; i <= count + 1; ++i) {
                Press(Qt::Key_Down);
                ASSERT_EQ(Selected(), std::min(i, count - 1)) << count;
            }
            for (int i = count - 2; i >= -2; --i) {
                Press(Qt::Key_Up);
                ASSERT_EQ(Selected(), std::max(i, 0)) << count;
            }
            EXPECT_EQ(Bar().value(), 0);
        });
}

TEST_F(Paging, ArrowsAtThePagesEdgesScrollUnderTheRow)
{
    InListOf(100, [this] {
        for (int i = 0; i < 15; ++i)
            Press(Qt::Key_Down);
        EXPECT_EQ(Selected(), 15);
        EXPECT_EQ(Grid().Row(), 11);
        EXPECT_EQ(Bar().value(), 5);
        for (int i = 0; i < 12; ++i)
            Press(Qt::Key_Up);
        EXPECT_EQ(Selected(), 3);
        EXPECT_EQ(Grid().Row(), 1);
        EXPECT_EQ(Bar().value(), 3);
    });
}

TEST_F(Paging, PageKeysGoThroughTheWholeListInBothDirections)
{
    InListOf(100, [this] {
        const auto press = [this](Qt::Key key, int times) {
            QList<int> visited;
            for (int i = 0; i < times; ++i) {
                Press(key);
                visited.append(Selected());
            }
            return visited;
        };
        EXPECT_THAT(
            press(Qt::Key_PageDown, 11), ElementsAre(10, 20, 30, 40, 50, 60, 70, 80, 90, 99, 99));
        EXPECT_EQ(Grid().Row(), 11);
        EXPECT_THAT(
            press(Qt::Key_PageUp, 11), ElementsAre(89, 79, 69, 59, 49, 39, 29, 19, 9, 0, 0));
        EXPECT_EQ(Grid().Row(), 1);
    });
}

TEST_F(Paging, PageKeysGoToTheEndsOfAListOfOnePageOrLess)
{
    for (const int count : {1, 10, 11})
        InListOf(count, [&] {
            Press(Qt::Key_PageDown);
            EXPECT_EQ(Selected(), count - 1);
            Press(Qt::Key_PageDown);
            EXPECT_EQ(Selected(), count - 1);
            Press(Qt::Key_PageUp);
            EXPECT_EQ(Selected(), 0);
        });
}

TEST_F(Paging, TheScrollBarShowsFromElevenRecordsOn)
{
    for (const int count : Counts)
        InListOf(count, [&] {
            EXPECT_EQ(Bar().isVisible(), count >= 11) << count;
            EXPECT_EQ(Bar().minimum(), 0);
            EXPECT_EQ(Bar().maximum(), std::max(count - 11, 0)) << count;
            EXPECT_EQ(Bar().singleStep(), 1);
            if (count >= 11) {
                EXPECT_EQ(Bar().pageStep(), 10);
            }
        });
}

TEST_F(Paging, TheScrollBarGoesThroughTheWholeListAndKeepsTheChosenRecord)
{
    InListOf(100, [this] {
        for (int value = 1; value <= 89; ++value) {
            ClickBar(QStyle::SC_ScrollBarAddLine);
            ASSERT_EQ(Bar().value(), value);
            ASSERT_EQ(Module->LookupWindowStart, value);
            ASSERT_EQ(Selected(), value + 10) << "the page's last row";
            ASSERT_EQ(Module->LookupRecordIndex, 0) << "scrolling alone keeps it";
        }
        for (int value = 88; value > 0; --value) {
            ClickBar(QStyle::SC_ScrollBarSubLine);
            ASSERT_EQ(Selected(), value + 10);
        }
        ClickBar(QStyle::SC_ScrollBarSubLine);
        EXPECT_EQ(Bar().value(), 0);
        EXPECT_EQ(Selected(), 0) << "the chosen record is back and selected";
    });
}

TEST_F(Paging, TheScrollBarMovesByAPageBesideItsSlider)
{
    InListOf(100, [this] {
        ClickBar(QStyle::SC_ScrollBarAddPage);
        EXPECT_EQ(Bar().value(), 10);
        EXPECT_EQ(Selected(), 20);
        ClickBar(QStyle::SC_ScrollBarSubPage);
        EXPECT_EQ(Selected(), 0);
    });
}

TEST_F(Paging, AChosenRecordStaysSelectedWhileItIsOnThePage)
{
    InListOf(100, [this] {
        ClickRow(8);
        EXPECT_EQ(Selected(), 7);
        for (int value = 1; value <= 7; ++value) {
            ClickBar(QStyle::SC_ScrollBarAddLine);
            EXPECT_EQ(Selected(), 7);
        }
        ClickBar(QStyle::SC_ScrollBarAddLine);
        EXPECT_EQ(Selected(), 18);
        ClickBar(QStyle::SC_ScrollBarSubLine);
        EXPECT_EQ(Selected(), 7);
    });
}

TEST_F(Paging, TheWheelGoesThroughTheWholeListInBothDirections)
{
    InListOf(100, [this] {
        const int step = QApplication::wheelScrollLines();
        for (int value = step; value < 89 + step; value += step) {
            Wheel(1);
            ASSERT_EQ(Bar().value(), std::min(value, 89));
            ASSERT_EQ(Selected(), Bar().value() + 10);
        }
        while (Bar().value() > 0) {
            const int before = Bar().value();
            Wheel(-1);
            ASSERT_EQ(Bar().value(), std::max(before - step, 0));
            ASSERT_EQ(Grid().selectionModel()->selectedRows().size(), 1);
        }
        EXPECT_EQ(Selected(), 0);
    });
}

TEST_F(Paging, TheWheelLeavesAListWithoutAScrollBarAlone)
{
    InListOf(10, [this] {
        Wheel(1);
        EXPECT_EQ(Selected(), 0);
        EXPECT_EQ(Grid().visualRect(Grid().model()->index(0, 1)).top(), 0);
    });
}

TEST_F(Paging, KeysGoOnFromWhatIsHighlighted)
{
    InListOf(100, [this] {
        Wheel(5);
        const int last = Bar().value() + 10;
        EXPECT_EQ(Selected(), last);
        Press(Qt::Key_Up);
        EXPECT_EQ(Selected(), last - 1);
    });
}

TEST_F(Paging, SelectTakesWhatIsHighlightedAfterScrolling)
{
    Company.Customers = NumberedCustomers(100);
    Start();
    LookUp(u"Customer"_s, [this] {
        ClickBar(QStyle::SC_ScrollBarAddLine);
        EXPECT_EQ(SelectedCode(), u"C012"_s);
        ClickButton("cmdSelect");
    });
    EXPECT_EQ(Lookup.LookupCustomerCode, u"C012"_s);
}

TEST_F(Paging, TheRowAfterThePageCanBeClickedAndCountsAsThePagesLast)
{
    InListOf(100, [this] {
        Window().resize(Window().width(), Window().height() * 2);
        LetEventsRun();
        ASSERT_EQ(Grid().Rows() - 1, 12);
        ClickRow(12);
        EXPECT_EQ(Selected(), 11);
        ExpectOneRowAndItsRecord();
        Press(Qt::Key_Down);
        EXPECT_EQ(Bar().value(), 1);
        EXPECT_EQ(Selected(), 11) << "the page moved under the row, which is the page's last now";
        EXPECT_EQ(Grid().Row(), 11);
    });
}

TEST_F(Paging, ProjectsScrollWithinTheirCustomer)
{
    Company.Projects.clear();
    for (int i = 1; i <= 25; ++i)
        for (const QString &customer : {u"0100"_s, u"0200"_s, u"0300"_s})
            Company.Projects.push_back(SampleProject(
                customer, u"P%1"_s.arg(i, 2, 10, QChar(u'0')), customer + u" work"_s));
    Start();
    Entry.CustomerCode = u"0200"_s;
    LookUp(u"Project"_s, [this] {
        for (int i = 1; i <= 26; ++i) {
            Press(Qt::Key_Down);
            ASSERT_EQ(SelectedCode(), u"P%1"_s.arg(std::min(i + 1, 25), 2, 10, QChar(u'0')));
            ASSERT_EQ(Grid().TextMatrix(Grid().Row(), 2), u"0200 work"_s);
        }
        EXPECT_EQ(Column(2).count(u"0200 work"_s), 11);
        EXPECT_EQ(Bar().value(), 14);
        LookupFixture::Press(Qt::Key_Return);
    });
    EXPECT_EQ(Entry.ProjectCode, u"P25"_s);
}
