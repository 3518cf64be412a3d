#include "app/clsApplication.h"

#include "platform/clsRunTimeError.h"
#include "platform/Display.h"
#include "tests/support/PrintQt.h"
#include "tests/support/Recorded.h"

#include <QTest>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <stdexcept>

using namespace Qt::StringLiterals;

namespace {

/// A window whose event handler fails as it is told to.
class clsFailing : public QWidget
{
public:
    std::function<void()> Fail;

protected:
    void mousePressEvent(QMouseEvent *) override { Fail(); }
};

} // namespace

// The application under test is the one that this program runs on.
namespace {

clsRecordedMessages *Told = nullptr;

} // namespace

TEST(Application, TellsWhatNoHandlerTookAndGoesOn)
{
    clsFailing window;
    window.Fail = [] { throw clsRunTimeError(7777, u"Test"_s, u"it broke"_s); };
    QTest::mouseClick(&window, Qt::LeftButton);
    window.Fail = [] { throw std::bad_alloc(); };
    QTest::mouseClick(&window, Qt::LeftButton);
    window.Fail = [] { throw std::out_of_range("row 9"); };
    QTest::mouseClick(&window, Qt::LeftButton);
    EXPECT_THAT(Told->Texts(),
        testing::ElementsAre(
            u"Error #7777 (it broke)."_s, u"Error #7 (Out of memory)."_s, u"Error #51 (row 9)."_s));
}

#ifdef __SANITIZE_ADDRESS__
/// The error that goes through the toolkit leaves memory of its own behind; only whole stacks tell
/// which, for tests/sanitizers/leaks.supp.
extern "C" const char *__asan_default_options()
{
    return "fast_unwind_on_malloc=0";
}
#endif

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        NeedNoDisplay();
    clsRecordedMessages messages;
    const clsApplication application(argc, argv, messages);
    Told = &messages;
    return RUN_ALL_TESTS();
}
