// Level shots: the tga reader's kinds, limits and faults; bmps prepared from packed data
// only when it unpacks exactly; the scan's copies and conversions, odd names left out
// with a log entry; and shots read ahead, taken only as the extraction comes to them.
#include "maps/ArchiveReader.h"
#include "maps/ArchiveShelf.h"
#include "maps/EntryChecks.h"
#include "maps/LevelShotConverter.h"
#include "maps/LevelShots.h"
#include "maps/PackedShot.h"
#include "maps/ShotPrefetch.h"
#include "maps/TgaPicture.h"
#include "MapsKit.h"

#include <QBuffer>
#include <QImage>
#include <QTemporaryDir>
#include <QThreadPool>
#include <algorithm>

using namespace steward;
using namespace steward::testing;

namespace {

QByteArray withIdLength(QByteArray tga, char length) { return tga.replace(0, 1, QByteArray(1, length)); }

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

// A plain picture of any kind, filled with a pattern.
QByteArray filled(int type, int width, int height, int depth, int descriptor)
{
    QByteArray tga = tgaHeader(type, width, height, depth, descriptor);
    for (int i = 0; i < width * height * depth / 8; ++i)
        tga.append(static_cast<char>((i * 131 + 7) & 0xff));
    return tga;
}

using LevelShotsTest = ScanTest;

} // namespace

// Each picture is also prepared from packed data, stored and deflated: the bmp is what Qt
// writes of the picture read.
TEST(TgaPicture, ReadsEveryKindWithinTheLimitsAndRefusesTheRestBeforeReadingTheirData)
{
    struct Case {
        const char* what;
        QByteArray tga;
        TgaFault fault;
        QSize size = QSize(0, 0);
        const char* pixels = ""; ///< "x,y=#aarrggbb ..."
    };
    const QByteArray fullRuns = runLengthPicture(2048, 2048);
    using enum TgaFault;
    const Case cases[] = {
        // Two pixels, one above the other; the file starts with the bottom row.
        {"bottom up", tgaHeader(2, 1, 2, 24, 0) + QByteArray("\x00\x00\xff\xff\x00\x00", 6), None, QSize(1, 2),
         "0,0=#ff0000ff 0,1=#ffff0000"},
        {"top down", tgaPicture(3, 2, 10, 20, 30), None, QSize(3, 2), "2,1=#ff0a141e"},
        // A run of three red pixels, then one literal green pixel.
        {"runs", tgaHeader(10, 4, 1, 24) + QByteArray("\x82\x00\x00\xff\x00\x00\xff\x00", 8), None, QSize(4, 1),
         "2,0=#ffff0000 3,0=#ff00ff00"},
        {"grey runs", tgaHeader(11, 2, 1, 8) + QByteArray("\x81\x40", 2), None, QSize(2, 1), "1,0=#ff404040"},
        // 16 bits: x1111100 00000000 is full red; right to left, so it lands on the right.
        {"16 bits", tgaHeader(2, 2, 1, 16, 0x30) + QByteArray("\x00\x7c\x00\x00", 4), None, QSize(2, 1),
         "1,0=#ffff0000 0,0=#ff000000"},
        {"32 bits", tgaHeader(2, 1, 1, 32, 0x28) + QByteArray("\x10\x20\x30\x80", 4), None, QSize(1, 1),
         "0,0=#80302010"},
        {"the largest", fullRuns, None, QSize(2048, 2048), "2047,2047=#ff302010"},
        {"24 bits, bottom up, rows padded by one byte", filled(2, 5, 3, 24, 0), None, QSize(5, 3)},
        {"24 bits, top down", filled(2, 5, 3, 24, 0x20), None, QSize(5, 3)},
        {"24 bits, no padding", filled(2, 4, 2, 24, 0), None, QSize(4, 2)},
        {"24 bits, rows padded by two bytes", filled(2, 2, 3, 24, 0x20), None, QSize(2, 3)},
        {"an odd width", filled(2, 127, 5, 24, 0), None, QSize(127, 5)},
        {"32 bits without alpha", filled(2, 2, 2, 32, 0x20), None, QSize(2, 2)},
        {"right to left", filled(2, 3, 2, 24, 0x10), None, QSize(3, 2)},
        {"an image id", withIdLength(filled(2, 3, 2, 24, 0), 4).insert(18, "name"), None, QSize(3, 2)},
        {"grey", filled(3, 3, 2, 8, 0x20), None, QSize(3, 2)},
        {"data short by a byte", filled(2, 3, 2, 24, 0).chopped(1), Damaged},
        {"short", QByteArray("short"), Damaged},
        {"cut off", tgaPicture(4, 4, 1, 2, 3).left(30), Damaged},
        {"runs cut off", tgaHeader(10, 4, 1, 24) + QByteArray("\x83\x00", 2), Damaged},
        {"colour-mapped", tgaHeader(1, 2, 2, 8) + QByteArray(4, '\0'), Damaged},
        {"a few runs for 2048 by 2048", tgaHeader(10, 2048, 2048, 32) + QByteArray(1000, '\xff'), Damaged},
        {"runs one packet short", fullRuns.left(fullRuns.size() - 4), Damaged},
        {"grey runs, nothing at all", tgaHeader(11, 2048, 2048, 8), Damaged},
        {"one byte short", tgaHeader(2, 64, 64, 24) + QByteArray(64 * 64 * 3 - 1, '\0'), Damaged},
        {"an id longer than the file", withIdLength(tgaPicture(1, 1, 0, 0, 0), '\xff'), Damaged},
        {"too wide", runLengthPicture(2049, 1), TooLarge},
        {"too high", runLengthPicture(1, 2049), TooLarge},
        {"a bomb", runLengthPicture(4096, 2048), TooLarge},
        {"a header alone", tgaHeader(2, 65535, 1024, 32), TooLarge},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TgaFault fault = TgaFault::None;
        const QImage picture = readTgaPicture(c.tga, &fault);
        EXPECT_EQ(fault, c.fault);
        EXPECT_EQ(picture.size(), c.size);
        for (const QString& pixel : QString::fromLatin1(c.pixels).split(u' ', Qt::SkipEmptyParts)) {
            const QStringList at = pixel.section(u'=', 0, 0).split(u',');
            EXPECT_EQ(QColor::fromRgba(picture.pixel(at[0].toInt(), at[1].toInt())).name(QColor::HexArgb),
                      pixel.section(u'=', 1));
        }
        for (const bool stored : {true, false}) {
            const PreparedShot shot = prepareShot(packedOf(c.tga, stored));
            EXPECT_TRUE(shot.verified && shot.fault == fault) << stored;
            EXPECT_EQ(shot.bmp, qtBmp(picture)) << stored;
        }
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

TEST_F(LevelShotsTest, CopiesThePicturesOfEveryArchiveAndConvertsTheTgaFiles)
{
    pk3(u"assets0.pk3"_s, {entry("levelshots/ffa_bespin.jpg", "from assets0"), "maps/ffa_bespin.bsp"});
    pk3(u"assets1.pk3"_s, {entry("levelshots/ffa_bespin.jpg", "from assets1"),
                           entry("levelshots/duel_pit.tga", tgaPicture(4, 2, 200, 10, 20))});
    pk3(u"nopictures.pk3"_s, {"maps/x.bsp", "x.jpg"});
    pk3(u"zmap.pk3"_s,
        {entry("LevelShots/zmap.tga", tgaPicture(2, 2, 0, 0, 255)), entry("levelshots/zmap.jpg", "a jpg stays a jpg"),
         entry("levelshots/zmap.png", "not selected"), "levelshots/sub/deeper.jpg", "levelshots/UP.JPG"});
    EXPECT_TRUE(extract());
    EXPECT_EQ(pictures(), (QStringList{u"UP.JPG"_s, u"duel_pit.tga"_s, u"ffa_bespin.jpg"_s, u"unknown.bmp"_s,
                                       u"unknown.jpg"_s, u"zmap.jpg"_s, u"zmap.tga"_s}));
    EXPECT_EQ(fileBytes(shots() + u"/ffa_bespin.jpg"_s), QByteArray("from assets1"));
    EXPECT_FALSE(QFileInfo::exists(shots() + u"/sub"_s));
    EXPECT_EQ(progress.activities.first(), u"Copying images from assets0.pk3...."_s);
    EXPECT_EQ(progress.activity, u"Done"_s);
    EXPECT_EQ(progress.value, 0);
    EXPECT_EQ(progress.maximum, 4);
    std::vector<int> counted = progress.values; // the bar moves one step for each archive
    std::erase(counted, 0);
    EXPECT_EQ(counted, (std::vector<int>{1, 2, 3, 4}));
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(pictures(), (QStringList{u"UP.JPG"_s, u"duel_pit.bmp"_s, u"ffa_bespin.jpg"_s, u"unknown.bmp"_s,
                                       u"unknown.jpg"_s, u"zmap.bmp"_s, u"zmap.jpg"_s}));
    EXPECT_EQ(fileBytes(shots() + u"/zmap.jpg"_s), QByteArray("a jpg stays a jpg"));
    EXPECT_TRUE(progress.activityVisible);
    EXPECT_TRUE(progress.activities.contains(u"Verifying images...."_s));
    EXPECT_TRUE(progress.activities.contains(u"Converting duel_pit.tga...."_s));
    EXPECT_FALSE(progress.overshoot);
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST_F(LevelShotsTest,
       WithoutAFolderConversionIsLoggedAReadOnlyOrUnreadableTgaIsDeletedAndFallbacksAreWrittenOnlyWhereMissing)
{
    EXPECT_TRUE(ConvertTgaToBmp(*t.app) && t.prompts.shown.empty());
    EXPECT_TRUE(log().contains(u"::CMapScanner.ConvertTgaToBmp(Function)"_s));
    writeFile(shots() + u"/ro.tga"_s, tgaPicture(2, 2, 1, 2, 3));
    QFile::setPermissions(shots() + u"/ro.tga"_s, QFile::ReadOwner);
    writeFile(shots() + u"/broken.TGA"_s, "not a picture");
    EXPECT_TRUE(ConvertTgaToBmp(*t.app));
    EXPECT_EQ(pictures(), QStringList{u"ro.bmp"_s});
    EXPECT_EQ(progress.maximum, 2);
    // The fallback pictures are written only where missing.
    writeFile(shots() + u"/unknown.jpg"_s, "the user's own");
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_EQ(fileBytes(shots() + u"/unknown.jpg"_s), QByteArray("the user's own"));
    EXPECT_FALSE(QImage(shots() + u"/unknown.bmp"_s).isNull());
    QFile::remove(shots() + u"/unknown.jpg"_s);
    EXPECT_TRUE(EnsureFallbackPictures(*t.app));
    EXPECT_FALSE(QImage(shots() + u"/unknown.jpg"_s).isNull());
}

TEST_F(LevelShotsTest, LevelShotsWithControlCharactersOrOverlongNamesAreLeftOutWithALogEntry)
{
    const QString overlong = QString(252, u'a') + u".jpg"_s; // 256 bytes
    const QString longest = QString(251, u'b') + u".jpg"_s;  // 255 bytes
    pk3(u"names.pk3"_s, {entry("levelshots/new\nline.tga", tgaPicture(2, 2, 1, 2, 3)), "levelshots/tab\tbed.jpg",
                         u"levelshots/"_s + overlong, u"levelshots/"_s + longest,
                         entry("levelshots/plain.tga", tgaPicture(2, 2, 1, 2, 3))});
    EXPECT_TRUE(extract() && ConvertTgaToBmp(*t.app));
    EXPECT_EQ(filesUnder(t.programFolder()),
              (QStringList{u"Jedi.aml"_s, u"arena-steward.log"_s, u"levelshots/"_s + longest, u"levelshots/plain.bmp"_s,
                           u"levelshots/unknown.bmp"_s, u"levelshots/unknown.jpg"_s}));
    EXPECT_TRUE(log().contains(u"The level shot levelshots/new\\x0aline.tga of names.pk3 was left out: its "
                               "name holds a control character"_s))
        << log().toStdString();
    EXPECT_TRUE(log().contains(u"levelshots/tab\\x09bed.jpg"_s));
    EXPECT_TRUE(log().contains(u"longer than 255 bytes"_s));
    EXPECT_TRUE(t.prompts.shown.empty());
}

TEST(EntryNames, OnlyPlainNamesOfAtMost255BytesPass)
{
    for (const QString& good : {u"ffa_yavin.jpg"_s, u"with blanks, commas & äccents.tga"_s, QString(127, QChar(0xe4))})
        EXPECT_TRUE(entryNameProblem(good).isEmpty()) << good.toStdString(); // the last: 254 bytes of UTF-8
    for (const QString& bad : {QString(128, QChar(0xe4)), u"a\nb"_s, u"a\rb"_s, u"\x7f"_s, u"a\x1b[2J"_s, u"a/b"_s,
                               u"a\\b"_s, QString(QChar(0x85))}) // 0x85: a C1 control character
        EXPECT_FALSE(entryNameProblem(bad).isEmpty()) << bad.toStdString();
}

// A shot that wasn't planned, was passed over, or whose archive changed is not there.
TEST(ShotPrefetch, ShotsAreTakenInTheirOrderOnlyAsPlanned)
{
    QTemporaryDir dir;
    ArchiveShelf shelf;
    std::vector<ShotPrefetch::Planned> plan;
    auto picture = [](int n) { return tgaPicture(4, 4, static_cast<quint8>(n), 7, 9); };
    for (int n = 0; n < 30; ++n) {
        const QString path = dir.path() + u"/a%1.pk3"_s.arg(n);
        ASSERT_TRUE(zipOf({"maps/m.bsp", entry("levelshots/m.tga", picture(n))}).write(path));
        shelf.open(path).park();
        plan.push_back({path, 1});
    }
    QThreadPool pool;
    ShotPrefetch prefetch(pool);
    prefetch.setPlan(plan);
    EXPECT_FALSE(prefetch.take(shelf, plan[0].archive, 0).verified); // the bsp isn't planned
    EXPECT_TRUE(prefetch.take(shelf, plan[5].archive, 1).verified);  // 0 to 4 passed over
    EXPECT_FALSE(prefetch.take(shelf, plan[3].archive, 1).verified); // gone for good
    // An archive replaced before it is read ahead: its shot isn't taken from the new file.
    ASSERT_TRUE(QFile::remove(plan[25].archive));
    ASSERT_TRUE(zipOf({entry("x", "y"), entry("levelshots/m.tga", picture(99))}).write(plan[25].archive));
    EXPECT_FALSE(prefetch.take(shelf, plan[25].archive, 1).verified);
    EXPECT_TRUE(prefetch.take(shelf, plan[26].archive, 1).verified);
}
