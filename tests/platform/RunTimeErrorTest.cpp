#include "platform/clsRunTimeError.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

TEST(RunTimeError, CarriesNumberSourceAndDescription)
{
    const clsRunTimeError error(53, u"Files"_s, u"File not found: Köln.db"_s);
    EXPECT_EQ(error.Number(), 53);
    EXPECT_EQ(error.Source(), u"Files"_s);
    EXPECT_EQ(error.Description(), u"File not found: Köln.db"_s);
    EXPECT_EQ(error.Message(), u"Error #53 (File not found: Köln.db)."_s);
}

TEST(RunTimeError, TellsItsTextToWhoeverKnowsOnlyTheStandardException)
{
    try {
        throw clsRunTimeError(6, u"Currency"_s, u"Überlauf"_s);
    } catch (const std::exception &error) {
        EXPECT_EQ(QString::fromUtf8(error.what()), u"Currency: Error #6 (Überlauf)."_s);
        return;
    }
    FAIL() << "it is no std::exception";
}

TEST(RunTimeError, ShowsANegativeNumberWithItsSign)
{
    EXPECT_EQ(clsRunTimeError(-7, {}, u"x"_s).Message(), u"Error #-7 (x)."_s);
}
