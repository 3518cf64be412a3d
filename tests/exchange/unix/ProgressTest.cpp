#include "exchange/frmProgress.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(Progress, WithoutADisplayThereIsNoWindow)
{
    frmProgress window; // the tests run on the offscreen platform
    window.ShowProgress(u"ABC"_s, u"Customers"_s, 1, 2);
    EXPECT_FALSE(window.isVisible());
}

} // namespace
