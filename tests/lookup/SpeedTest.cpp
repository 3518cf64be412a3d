// A key typed on a list a hundred times as long takes about as long.

#include "tests/lookup/LookupFixture.h"

#include <QElapsedTimer>

#include <algorithm>
#include <limits>

using namespace Qt::StringLiterals;

namespace {

constexpr int Few = 10000;
constexpr int Many = 1000000;
/// A search that looked at every record would take a hundred times as long.
constexpr double MaxGrowth = 10;

class Speed : public LookupFixture
{
protected:
    void StartWith(int count)
    {
        Company.Customers.clear();
        Company.Customers.reserve(static_cast<size_t>(count));
        for (int i = 0; i < count; ++i)
            Company.Customers.push_back(SampleCustomer(u"C%1"_s.arg(i, 7, 10, QChar(u'0')),
                u"%1 Partners"_s.arg(i * 7919LL % 300007, 6, 36, QChar(u'0'))));
        Start();
        Company.Customers.clear();
    }

    /// The quickest of many keys: another program may hold the processor during the others.
    double NanosecondsOfAKey(const QString &choice)
    {
        double least = std::numeric_limits<double>::max();
        Lookup.LookupByChoice[LookupKinds::Customers] = choice;
        LookUp(u"Customer"_s, [&] {
            QLineEdit &box = Box("txtLookup");
            box.setFocus();
            for (const QChar letter : u"c0001977 0x7b3 00q1"_s) {
                QElapsedTimer timer;
                timer.start();
                QTest::keyClick(&box, letter.toLatin1());
                QCoreApplication::processEvents();
                least = std::min(least, static_cast<double>(timer.nsecsElapsed()));
                ExpectOneRowAndItsRecord();
            }
            EXPECT_LE(Grid().Rows() - 1, 12) << "only a page is built";
            Press("msgLookup", Qt::Key_Escape);
        });
        return least;
    }
};

} // namespace

TEST_F(Speed, AKeyOnAMillionCustomersTakesAboutAsLongAsOnTenThousand)
{
    const QString choices[] = {QString(), u"Name"_s};
    std::vector<double> amongFew;
    StartWith(Few);
    for (const QString &choice : choices)
        amongFew.push_back(NanosecondsOfAKey(choice));
    StartWith(Many);
    for (size_t i = 0; i < std::size(choices); ++i)
        EXPECT_LT(NanosecondsOfAKey(choices[i]), MaxGrowth * amongFew[i])
            << choices[i].toStdString();
}
