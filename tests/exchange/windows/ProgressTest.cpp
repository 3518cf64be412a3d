#include "exchange/frmProgress.h"
#include "tests/support/Windows.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QProgressBar>

using namespace Qt::StringLiterals;

namespace {

TEST(Progress, IsSeenWithTheCompanyAndTheTable)
{
    frmProgress window;
    EXPECT_TRUE(window.isVisible());
    window.ShowProgress(u"ABC"_s, u"Customers"_s, 1, 4);
    EXPECT_EQ(Control<QLabel>(window, "lblCompany").text(), u"ABC"_s);
    EXPECT_EQ(Control<QLabel>(window, "lblTable").text(), u"Customers"_s);
    EXPECT_EQ(Control<QProgressBar>(window, "prgTable").value(), 25);
}

} // namespace
