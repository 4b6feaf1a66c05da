// The format strings of messages, file names and descriptors, checked against printf.

#include "Classes/model/Format.h"

#include <gtest/gtest.h>

using namespace qm;

TEST(Format, ObjectPlaceholdersTakeStringsAndNumbers)
{
    EXPECT_EQ(format("%@/%@%@.png", {QStringLiteral("out"), "font", "@2x"}), QStringLiteral("out/font@2x.png"));
    EXPECT_EQ(format("%@/%i%@.png", {"out", 65, "@2x"}), QStringLiteral("out/65@2x.png"));
    EXPECT_EQ(format("id='%@'", {char16_t(u'A')}), QStringLiteral("id='A'"));
    EXPECT_EQ(format("100%% of %@", {"it"}), QStringLiteral("100% of it"));
}

TEST(Format, NumericConversionsMatchPrintf)
{
    EXPECT_EQ(format("%d %i %lX %x", {-3, 42, 255, 255}), QStringLiteral("-3 42 FF ff"));
    EXPECT_EQ(format("%.4f", {46.875}), QStringLiteral("46.8750"));
    EXPECT_EQ(format("%.4f", {0.1f}), QStringLiteral("0.1000"));
    EXPECT_EQ(format("%.4f", {0.53125}), QStringLiteral("0.5312")); // exact halves round to even
    EXPECT_EQ(format("%.4f", {0.53136}), QStringLiteral("0.5314"));
    EXPECT_EQ(format("#size=(%d.0, %d.0)", {10, 12}), QStringLiteral("#size=(10.0, 12.0)"));
    EXPECT_EQ(format("%5d|%-3d|", {7, 8}), QStringLiteral("    7|8  |"));
    EXPECT_EQ(format("%c", {65}), QStringLiteral("A"));
}

TEST(Format, MissingArgumentsFormatAsNothing)
{
    EXPECT_EQ(format("a %@ b %d c"), QStringLiteral("a  b  c"));
    EXPECT_EQ(format("plain text"), QStringLiteral("plain text"));
    EXPECT_EQ(format("trailing %"), QStringLiteral("trailing "));
}
