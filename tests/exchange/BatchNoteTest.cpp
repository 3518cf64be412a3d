#include "exchange/BatchNote.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

const QString Batch = u"20240101-120000-007-0123abcd"_s;
const QString Digest = u"0123456789abcdef"_s.repeated(4);

TEST(BatchNote, ComesBackAsItWasWritten)
{
    for (const BatchNote &written : {BatchNote(), {Batch, QString()}, {Batch, Digest}}) {
        const std::optional<BatchNote> read = BatchNote::FromText(written.Text());
        ASSERT_TRUE(read.has_value()) << qPrintable(written.Text());
        EXPECT_EQ(read->Batch, written.Batch);
        EXPECT_EQ(read->Digest, written.Digest);
    }
}

TEST(BatchNote, AnotherProgramsTextIsNone)
{
    for (const QString &text : {u"../../elsewhere"_s, u"../x "_s + Digest, u' ' + Digest,
             Batch + u' ', Batch + u" 12ab"_s, Batch + u' ' + Digest.toUpper(),
             Batch + u' ' + Digest + u" x"_s, Batch + u"  "_s + Digest, u" "_s})
        EXPECT_FALSE(BatchNote::FromText(text).has_value()) << qPrintable(text);
}

} // namespace
