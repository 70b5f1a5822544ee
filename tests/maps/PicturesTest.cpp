// Level shot pictures: the tga reader's kinds, limits and faults; and the bmp prepared
// from an archive's packed data, taken only when the data unpacks exactly as the
// directory claims, and then byte for byte what Qt writes of the same picture.
#include "maps/ArchiveReader.h"
#include "maps/PackedShot.h"
#include "maps/TgaPicture.h"
#include "MapsKit.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>

using namespace steward;
using namespace steward::testing;

namespace {

QByteArray withIdLength(QByteArray tga, char length)
{
    tga[0] = length;
    return tga;
}

PackedEntry packedOf(const QByteArray& data, bool stored)
{
    QTemporaryDir dir;
    const QString path = dir.path() + u"/a.pk3"_s;
    EXPECT_TRUE(ZipBuilder().file(u"levelshots/a.tga"_s, data, stored).write(path));
    PackedEntry packed;
    EXPECT_TRUE(ArchiveReader(path).readPacked(0, &packed));
    return packed;
}

// What Qt writes of a picture as a bmp; nothing for a null picture.
QByteArray qtBmp(const QImage& picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (!picture.isNull() && !picture.convertToFormat(QImage::Format_RGB32).save(&buffer, "BMP"))
        ADD_FAILURE() << "Qt wrote no bmp";
    return bytes;
}

} // namespace

TEST(TgaPicture, ReadsEveryKindWithinTheLimitsAndRefusesTheRestBeforeReadingTheirData)
{
    struct Case {
        const char* what;
        QByteArray tga;
        TgaFault fault;
        QSize size = {0, 0};
        std::vector<std::tuple<int, int, QRgb>> pixels = {};
    };
    const QByteArray fullRuns = runLengthPicture(2048, 2048);
    const Case cases[] = {
        // Two pixels, one above the other; the file starts with the bottom row.
        {"bottom up",
         tgaHeader(2, 1, 2, 24, 0) + QByteArray("\x00\x00\xff\xff\x00\x00", 6),
         TgaFault::None,
         {1, 2},
         {{0, 0, qRgb(0, 0, 255)}, {0, 1, qRgb(255, 0, 0)}}},
        {"top down", tgaPicture(3, 2, 10, 20, 30), TgaFault::None, {3, 2}, {{2, 1, qRgb(10, 20, 30)}}},
        // A run of three red pixels, then one literal green pixel.
        {"runs",
         tgaHeader(10, 4, 1, 24) + QByteArray("\x82\x00\x00\xff\x00\x00\xff\x00", 8),
         TgaFault::None,
         {4, 1},
         {{2, 0, qRgb(255, 0, 0)}, {3, 0, qRgb(0, 255, 0)}}},
        {"grey runs",
         tgaHeader(11, 2, 1, 8) + QByteArray("\x81\x40", 2),
         TgaFault::None,
         {2, 1},
         {{1, 0, qRgb(64, 64, 64)}}},
        // 16 bits: x1111100 00000000 is full red; right to left, so it lands on the right.
        {"16 bits",
         tgaHeader(2, 2, 1, 16, 0x30) + QByteArray("\x00\x7c\x00\x00", 4),
         TgaFault::None,
         {2, 1},
         {{1, 0, qRgb(255, 0, 0)}, {0, 0, qRgb(0, 0, 0)}}},
        {"32 bits",
         tgaHeader(2, 1, 1, 32, 0x28) + QByteArray("\x10\x20\x30\x80", 4),
         TgaFault::None,
         {1, 1},
         {{0, 0, qRgba(0x30, 0x20, 0x10, 0x80)}}},
        {"the largest", fullRuns, TgaFault::None, {2048, 2048}, {{2047, 2047, qRgb(0x30, 0x20, 0x10)}}},
        {"short", QByteArray("short"), TgaFault::Damaged},
        {"cut off", tgaPicture(4, 4, 1, 2, 3).left(30), TgaFault::Damaged},
        {"runs cut off", tgaHeader(10, 4, 1, 24) + QByteArray("\x83\x00", 2), TgaFault::Damaged},
        {"colour-mapped", tgaHeader(1, 2, 2, 8) + QByteArray(4, '\0'), TgaFault::Damaged},
        {"a few runs for 2048 by 2048", tgaHeader(10, 2048, 2048, 32) + QByteArray(1000, '\xff'), TgaFault::Damaged},
        {"runs one packet short", fullRuns.left(fullRuns.size() - 4), TgaFault::Damaged},
        {"grey runs, nothing at all", tgaHeader(11, 2048, 2048, 8), TgaFault::Damaged},
        {"one byte short", tgaHeader(2, 64, 64, 24) + QByteArray(64 * 64 * 3 - 1, '\0'), TgaFault::Damaged},
        {"an id longer than the file", withIdLength(tgaPicture(1, 1, 0, 0, 0), '\xff'), TgaFault::Damaged},
        {"too wide", runLengthPicture(2049, 1), TgaFault::TooLarge},
        {"too high", runLengthPicture(1, 2049), TgaFault::TooLarge},
        {"a bomb", runLengthPicture(4096, 2048), TgaFault::TooLarge},
        {"a header alone", tgaHeader(2, 65535, 1024, 32), TgaFault::TooLarge},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TgaFault fault = TgaFault::None;
        const QImage picture = readTgaPicture(c.tga, &fault);
        EXPECT_EQ(fault, c.fault);
        EXPECT_EQ(picture.size(), c.size);
        for (const auto& [x, y, colour] : c.pixels)
            EXPECT_EQ(picture.pixel(x, y), colour) << x << "," << y;
    }
}

TEST(PackedShot, DataThatDoesNotUnpackExactlyIsNotTaken)
{
    const QByteArray tga = tgaPicture(8, 8, 1, 2, 3);
    const std::pair<const char*, std::function<void(PackedEntry&)>> spoils[] = {
        {"a wrong checksum", [](PackedEntry& p) { p.crc ^= 1; }},
        {"a larger claim", [](PackedEntry& p) { ++p.size; }},
        {"a smaller claim", [](PackedEntry& p) { --p.size; }},
        {"cut-off data", [](PackedEntry& p) { p.data.chop(3); }},
        {"data after the end of the stream", [](PackedEntry& p) { p.data.append("tail"); }},
        {"a flipped byte", [](PackedEntry& p) { p.data[p.data.size() / 2] = char(p.data[p.data.size() / 2] ^ 0x55); }},
        {"another packing", [](PackedEntry& p) { p.method = 12; }},
    };
    for (const auto& [what, spoil] : spoils) {
        for (const bool stored : {true, false}) {
            SCOPED_TRACE(::testing::Message() << what << (stored ? " stored" : " deflated"));
            PackedEntry packed = packedOf(tga, stored);
            spoil(packed);
            QByteArray data;
            EXPECT_FALSE(unpackExactly(packed, &data));
            EXPECT_FALSE(prepareShot(packed).verified);
        }
    }
}

TEST(PackedShot, EveryKindOfTgaGivesTheBmpQtWritesOfItsPictureOrItsFault)
{
    // Plain true-colour data goes to the bmp straight; every other kind is decoded.
    auto filled = [](int type, int width, int height, int depth, int descriptor) {
        QByteArray tga = tgaHeader(type, width, height, depth, descriptor);
        for (int i = 0; i < width * height * depth / 8; ++i)
            tga.append(static_cast<char>((i * 131 + 7) & 0xff));
        return tga;
    };
    const std::pair<const char*, QByteArray> cases[] = {
        {"24 bits, bottom up", filled(2, 5, 3, 24, 0)},
        {"24 bits, top down", filled(2, 5, 3, 24, 0x20)},
        {"24 bits, no padding", filled(2, 4, 2, 24, 0)},
        {"24 bits, rows padded by two bytes", filled(2, 2, 3, 24, 0x20)},
        {"an odd width", filled(2, 127, 5, 24, 0)},
        {"a level shot's size", filled(2, 128, 128, 24, 0x20)},
        {"32 bits with alpha", filled(2, 3, 3, 32, 0x28)},
        {"32 bits without alpha", filled(2, 2, 2, 32, 0x20)},
        {"right to left", filled(2, 3, 2, 24, 0x10)},
        {"an image id", withIdLength(filled(2, 3, 2, 24, 0), 4).insert(18, "name")},
        {"16 bits", filled(2, 3, 2, 16, 0)},
        {"grey", filled(3, 3, 2, 8, 0x20)},
        {"run-length", tgaHeader(10, 2, 1, 24) + QByteArray("\x81\x01\x02\x03", 4)},
        {"data short by a byte", filled(2, 3, 2, 24, 0).chopped(1)},
        {"too large", tgaHeader(2, 4096, 1, 24)},
        {"not a picture", "not a picture"},
    };
    for (const auto& [what, tga] : cases) {
        for (const bool stored : {true, false}) {
            SCOPED_TRACE(::testing::Message() << what << (stored ? " stored" : " deflated"));
            TgaFault fault = TgaFault::None;
            const QImage picture = readTgaPicture(tga, &fault);
            const PreparedShot shot = prepareShot(packedOf(tga, stored));
            EXPECT_TRUE(shot.verified);
            EXPECT_EQ(shot.fault, fault);
            EXPECT_EQ(shot.bmp, qtBmp(picture));
        }
    }
}
