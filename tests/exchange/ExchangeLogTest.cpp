#include "exchange/ExchangeLog.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using testing::MatchesRegex;

namespace {

TEST(ExchangeLog, EachMessageIsOneLineWhateverItHolds)
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(u"exchange.log"_s);
    QStringList heard;
    ExchangeLog log(name, [&](const QString &message) { heard.append(message); });
    log.Write(u"a\nb\rc"_s);
    log.WriteError(u"no\nsuch file"_s);
    EXPECT_EQ(heard, (QStringList{u"a\nb\rc"_s, u"Error: no\nsuch file"_s}));
    QFile file(name);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_THAT(file.readAll().toStdString(),
        MatchesRegex("....-..-.. ..:..:.. \\[[0-9]+\\] a b c\n"
                     "....-..-.. ..:..:.. \\[[0-9]+\\] Error: no such file\n"));
}

} // namespace
