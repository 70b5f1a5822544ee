#include "maps/TgaPicture.h"
#include "testkit/ZipBuilder.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;

TEST(TgaPicture, ReadsFilesWithoutTheVersionTwoFooterInTheirOrientation)
{
    // Two pixels, one above the other; the file starts with the bottom row.
    const QByteArray bottomUp = tgaHeader(2, 1, 2, 24, 0x00) + QByteArray("\x00\x00\xff"
                                                                          "\xff\x00\x00",
                                                                          6);
    const QImage picture = readTgaPicture(bottomUp);
    ASSERT_FALSE(picture.isNull());
    EXPECT_EQ(picture.pixelColor(0, 0), QColor(0, 0, 255));
    EXPECT_EQ(picture.pixelColor(0, 1), QColor(255, 0, 0));

    const QImage plain = readTgaPicture(tgaPicture(3, 2, 10, 20, 30));
    ASSERT_EQ(plain.size(), QSize(3, 2));
    EXPECT_EQ(plain.pixelColor(2, 1), QColor(10, 20, 30));
}

TEST(TgaPicture, ReadsRunLengthAndGreyFiles)
{
    // A run of three red pixels, then one literal green pixel.
    const QByteArray runs = tgaHeader(10, 4, 1, 24, 0x20) + QByteArray("\x82\x00\x00\xff"
                                                                       "\x00\x00\xff\x00",
                                                                       8);
    const QImage colour = readTgaPicture(runs);
    ASSERT_EQ(colour.size(), QSize(4, 1));
    EXPECT_EQ(colour.pixelColor(2, 0), QColor(255, 0, 0));
    EXPECT_EQ(colour.pixelColor(3, 0), QColor(0, 255, 0));

    const QImage grey = readTgaPicture(tgaHeader(11, 2, 1, 8, 0x20) + QByteArray("\x81\x40", 2));
    ASSERT_EQ(grey.size(), QSize(2, 1));
    EXPECT_EQ(grey.pixelColor(1, 0), QColor(64, 64, 64));
}

TEST(TgaPicture, ReadsSixteenAndThirtyTwoBitPixels)
{
    // 16 bits: x1111100 00000000 is full red; right to left, so it lands on the right.
    const QImage high = readTgaPicture(tgaHeader(2, 2, 1, 16, 0x30) + QByteArray("\x00\x7c\x00\x00", 4));
    ASSERT_EQ(high.size(), QSize(2, 1));
    EXPECT_EQ(high.pixelColor(1, 0), QColor(255, 0, 0));
    EXPECT_EQ(high.pixelColor(0, 0), QColor(0, 0, 0));

    const QImage alpha = readTgaPicture(tgaHeader(2, 1, 1, 32, 0x28) + QByteArray("\x10\x20\x30\x80", 4));
    ASSERT_FALSE(alpha.isNull());
    EXPECT_TRUE(alpha.hasAlphaChannel());
    EXPECT_EQ(alpha.pixel(0, 0), qRgba(0x30, 0x20, 0x10, 0x80));
}

TEST(TgaPicture, DamagedOrUnsupportedFilesGiveNoPicture)
{
    EXPECT_TRUE(readTgaPicture(QByteArray("short")).isNull());
    EXPECT_TRUE(readTgaPicture(tgaPicture(4, 4, 1, 2, 3).left(30)).isNull());
    EXPECT_TRUE(readTgaPicture(tgaHeader(10, 4, 1, 24, 0x20) + QByteArray("\x83\x00", 2)).isNull());
    EXPECT_TRUE(readTgaPicture(tgaHeader(1, 2, 2, 8, 0x20) + QByteArray(4, '\0')).isNull());
    QByteArray huge = tgaHeader(2, 0, 0, 24, 0x20);
    huge[13] = huge[15] = '\xff'; // 65280 by 65280 pixels claimed
    EXPECT_TRUE(readTgaPicture(huge + QByteArray(100, '\0')).isNull());
}
