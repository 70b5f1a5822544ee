// Level shots prepared from their packed data on a worker count only when the data
// unpacks exactly as the archive's directory claims; any other data is left to the
// archive reader, whose reading gives the picture or the error it always gave.
#include "maps/ArchiveReader.h"
#include "maps/LevelShotConverter.h"
#include "maps/PackedShot.h"
#include "testkit/TestApp.h"
#include "testkit/ZipBuilder.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>

using namespace steward;
using namespace steward::testing;
using namespace Qt::StringLiterals;

namespace {

PackedEntry packedOf(const QByteArray& data, bool stored)
{
    QTemporaryDir dir;
    const QString path = dir.path() + u"/a.pk3"_s;
    EXPECT_TRUE(ZipBuilder().file(u"levelshots/a.tga"_s, data, stored).write(path));
    ArchiveReader reader(path);
    PackedEntry packed;
    EXPECT_TRUE(reader.readPacked(0, &packed));
    return packed;
}

} // namespace

TEST(PackedShot, StoredAndDeflatedDataUnpackToTheSameBmpAsTheFileRoad)
{
    const QByteArray tga = tgaPicture(6, 3, 10, 200, 30);
    QTemporaryDir dir;
    const QString bmp = dir.path() + u"/a.bmp"_s;
    ASSERT_EQ(convertTgaToBmpFile(tga, bmp), TgaFault::None);
    for (const bool stored : {true, false}) {
        const PreparedShot shot = prepareShot(packedOf(tga, stored));
        EXPECT_TRUE(shot.verified) << stored;
        EXPECT_EQ(shot.fault, TgaFault::None);
        EXPECT_EQ(shot.bmp, fileBytes(bmp));
    }
}

TEST(PackedShot, DataThatDoesNotUnpackExactlyIsNotTaken)
{
    const QByteArray tga = tgaPicture(8, 8, 1, 2, 3);
    struct Spoil {
        const char* what;
        std::function<void(PackedEntry&)> spoil;
    };
    const std::vector<Spoil> spoils = {
        {"a wrong checksum", [](PackedEntry& p) { p.crc ^= 1; }},
        {"a larger claim", [](PackedEntry& p) { ++p.size; }},
        {"a smaller claim", [](PackedEntry& p) { --p.size; }},
        {"cut-off data", [](PackedEntry& p) { p.data.chop(3); }},
        {"data after the end of the stream", [](PackedEntry& p) { p.data.append("tail"); }},
        {"a flipped byte",
         [](PackedEntry& p) { p.data[p.data.size() / 2] = static_cast<char>(p.data[p.data.size() / 2] ^ 0x55); }},
        {"another packing", [](PackedEntry& p) { p.method = 12; }},
    };
    for (const Spoil& s : spoils) {
        for (const bool stored : {true, false}) {
            PackedEntry packed = packedOf(tga, stored);
            s.spoil(packed);
            QByteArray data;
            EXPECT_FALSE(unpackExactly(packed, &data)) << s.what << (stored ? " stored" : " deflated");
            EXPECT_FALSE(prepareShot(packed).verified) << s.what << (stored ? " stored" : " deflated");
        }
    }
}

TEST(PackedShot, APictureTheReaderRefusesIsVerifiedDataWithItsFault)
{
    const PreparedShot tooLarge = prepareShot(packedOf(tgaHeader(2, 4096, 1, 24), false));
    EXPECT_TRUE(tooLarge.verified);
    EXPECT_EQ(tooLarge.fault, TgaFault::TooLarge);
    EXPECT_TRUE(tooLarge.bmp.isEmpty());
    const PreparedShot damaged = prepareShot(packedOf("not a picture", true));
    EXPECT_TRUE(damaged.verified);
    EXPECT_EQ(damaged.fault, TgaFault::Damaged);
}

TEST(PackedShot, TheBmpBytesAreThoseQtWrites)
{
    // Pixels of every channel value, so that a swapped or shifted channel shows.
    auto painted = [](int width, int height, QImage::Format format) {
        QImage picture(width, height, format);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                picture.setPixel(
                    x, y,
                    qRgba((x * 37 + y) & 0xff, (y * 59 + x * 3) & 0xff, (x * y * 11) & 0xff, (x * 13 + y * 7) & 0xff));
        return picture;
    };
    QByteArray greyTga = tgaHeader(3, 5, 3, 8);
    for (int i = 0; i < 15; ++i)
        greyTga.append(static_cast<char>(i * 17));
    QImage dense = painted(7, 2, QImage::Format_RGB32);
    dense.setDotsPerMeterX(3780);
    dense.setDotsPerMeterY(1234);
    struct Case {
        const char* what;
        QImage picture;
    };
    const std::vector<Case> cases = {
        {"one pixel", painted(1, 1, QImage::Format_RGB32)},
        {"rows padded by one byte", painted(1, 3, QImage::Format_RGB32)},
        {"rows padded by two bytes", painted(2, 2, QImage::Format_RGB32)},
        {"rows padded by three bytes", painted(3, 4, QImage::Format_RGB32)},
        {"no padding", painted(4, 3, QImage::Format_RGB32)},
        {"an odd width", painted(127, 5, QImage::Format_RGB32)},
        {"a level shot's size", painted(128, 128, QImage::Format_RGB32)},
        {"alpha of every value", painted(33, 9, QImage::Format_ARGB32)},
        {"another resolution", dense},
        {"a grey tga", readTgaPicture(greyTga)},
        {"a true colour tga", readTgaPicture(tgaPicture(6, 3, 10, 200, 30))},
        {"premultiplied alpha", painted(5, 5, QImage::Format_ARGB32_Premultiplied)},
        {"grey pixels", painted(5, 4, QImage::Format_Grayscale8)},
        {"16-bit pixels", painted(3, 3, QImage::Format_RGB16)},
    };
    for (const Case& c : cases) {
        ASSERT_FALSE(c.picture.isNull()) << c.what;
        QByteArray qt;
        QBuffer buffer(&qt);
        buffer.open(QIODevice::WriteOnly);
        ASSERT_TRUE(c.picture.convertToFormat(QImage::Format_RGB32).save(&buffer, "BMP")) << c.what;
        EXPECT_EQ(bmpBytes(c.picture), qt) << c.what;
    }
}

TEST(PackedShot, EveryKindOfTgaGivesTheBmpQtWritesOfItsPicture)
{
    // Plain true-colour data goes to the bmp straight; every other kind is decoded.
    auto filled = [](int type, int width, int height, int depth, int descriptor) {
        QByteArray tga = tgaHeader(type, width, height, depth, descriptor);
        for (int i = 0; i < width * height * depth / 8; ++i)
            tga.append(static_cast<char>((i * 131 + 7) & 0xff));
        return tga;
    };
    QByteArray withId = filled(2, 3, 2, 24, 0);
    withId[0] = 4;
    withId.insert(18, "name");
    struct Case {
        const char* what;
        QByteArray tga;
    };
    const std::vector<Case> cases = {
        {"24 bits, bottom up", filled(2, 5, 3, 24, 0)},
        {"24 bits, top down", filled(2, 5, 3, 24, 0x20)},
        {"24 bits, no padding", filled(2, 4, 2, 24, 0)},
        {"32 bits with alpha", filled(2, 3, 3, 32, 0x28)},
        {"32 bits without alpha", filled(2, 2, 2, 32, 0x20)},
        {"right to left", filled(2, 3, 2, 24, 0x10)},
        {"an image id", withId},
        {"16 bits", filled(2, 3, 2, 16, 0)},
        {"grey", filled(3, 3, 2, 8, 0x20)},
        {"run-length", tgaHeader(10, 2, 1, 24) + QByteArray("\x81\x01\x02\x03", 4)},
        {"data short by a byte", filled(2, 3, 2, 24, 0).chopped(1)},
    };
    for (const Case& c : cases) {
        TgaFault fault = TgaFault::None;
        const QImage picture = readTgaPicture(c.tga, &fault);
        QByteArray qt;
        if (!picture.isNull()) {
            QBuffer buffer(&qt);
            buffer.open(QIODevice::WriteOnly);
            ASSERT_TRUE(picture.convertToFormat(QImage::Format_RGB32).save(&buffer, "BMP")) << c.what;
        }
        const PreparedShot shot = prepareShot(packedOf(c.tga, true));
        EXPECT_TRUE(shot.verified) << c.what;
        EXPECT_EQ(shot.fault, fault) << c.what;
        EXPECT_EQ(shot.bmp, qt) << c.what;
    }
}
