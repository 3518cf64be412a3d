#include "platform/clsProcess.h"

#include "tests/support/PrintQt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(SplitCommandLine, KeepsWhatStandsInQuotesTogether)
{
    EXPECT_THAT(SplitCommandLine(u"-hd \"a b\" c"_s), ElementsAre(u"-hd"_s, u"a b"_s, u"c"_s));
    EXPECT_THAT(
        SplitCommandLine(u"  -ARG  \"\"  *  "_s), ElementsAre(u"-ARG"_s, QString(u""_s), u"*"_s));
    EXPECT_THAT(SplitCommandLine(u"-ARG=\"x y\"z"_s), ElementsAre(u"-ARG=x yz"_s));
    EXPECT_THAT(SplitCommandLine(QString()), IsEmpty());
}

TEST(SplitCommandLine, ADoubledQuoteInsideQuotesIsAQuote)
{
    EXPECT_THAT(SplitCommandLine(u"\"a \"\"b\"\" c\" d"_s), ElementsAre(u"a \"b\" c"_s, u"d"_s));
    EXPECT_THAT(SplitCommandLine(u"\"\"\"\" \"\""_s), ElementsAre(u"\""_s, QString(u""_s)));
    EXPECT_THAT(SplitCommandLine(u"a\"\"b"_s), ElementsAre(u"ab"_s));
}

TEST(SplitCommandLine, GivesNoOtherSignAMeaning)
{
    EXPECT_THAT(SplitCommandLine(u"C:\\mas90\\ $(rm) ; & %PATH% 'x"_s),
        ElementsAre(u"C:\\mas90\\"_s, u"$(rm)"_s, u";"_s, u"&"_s, u"%PATH%"_s, u"'x"_s));
}
