#include "exchange/frmProgress.h"
#include "tests/support/Windows.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>

using namespace Qt::StringLiterals;

namespace {

struct Step
{
    qint64 Done;
    qint64 All;
    int Percent;
};

TEST(Progress, IsSeenWithTheCompanyTheTableAndHowFarItIs)
{
    for (const Step &step : {Step{0, 4, 0}, Step{1, 4, 25}, Step{3, 4, 75}, Step{4, 4, 100},
             Step{1, 3, 33}, Step{0, 0, 100}}) {
        frmProgress window(true);
        EXPECT_TRUE(window.isVisible());
        window.ShowProgress(u"ABC"_s, u"Customers"_s, step.Done, step.All);
        EXPECT_EQ(Control<QLabel>(window, "lblCompany").text(), u"ABC"_s);
        EXPECT_EQ(Control<QLabel>(window, "lblTable").text(), u"Customers"_s);
        EXPECT_EQ(Control<QProgressBar>(window, "prgTable").value(), step.Percent);
    }
}

TEST(Progress, WithoutADisplayThereIsNoWindow)
{
    frmProgress window(false);
    window.ShowProgress(u"ABC"_s, u"Customers"_s, 1, 2);
    EXPECT_FALSE(window.isVisible());
}

TEST(Progress, IsForADisplayThatSomebodyCanLookAt)
{
    const QString platform = QGuiApplication::platformName();
    EXPECT_EQ(HasDisplay(), platform != u"offscreen"_s) << platform.toStdString();
}

} // namespace
