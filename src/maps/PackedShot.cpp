#include "maps/PackedShot.h"

#include <QBuffer>
#include <QImage>

#include <cstring>
#include <zlib.h>

namespace steward {

bool unpackExactly(const PackedEntry& packed, QByteArray* data)
{
    if (packed.method == 0) {
        if (static_cast<quint64>(packed.data.size()) != packed.size)
            return false;
        *data = packed.data;
    } else if (packed.method == 8) {
        // One byte more than claimed, so that data which unpacks to more is seen.
        data->resize(static_cast<qsizetype>(packed.size) + 1);
        z_stream stream{};
        if (inflateInit2(&stream, -MAX_WBITS) != Z_OK)
            return false;
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(packed.data.constData()));
        stream.avail_in = static_cast<uInt>(packed.data.size());
        stream.next_out = reinterpret_cast<Bytef*>(data->data());
        stream.avail_out = static_cast<uInt>(data->size());
        const int result = inflate(&stream, Z_FINISH);
        const bool whole = result == Z_STREAM_END && stream.avail_in == 0 && stream.total_out == packed.size;
        inflateEnd(&stream);
        if (!whole)
            return false;
        data->resize(static_cast<qsizetype>(packed.size));
    } else {
        return false;
    }
    const uLong sum =
        crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef*>(data->constData()), static_cast<uInt>(data->size()));
    return sum == packed.crc;
}

namespace {

void put16(char*& at, quint32 value)
{
    *at++ = static_cast<char>(value & 0xff);
    *at++ = static_cast<char>((value >> 8) & 0xff);
}

void put32(char*& at, quint32 value)
{
    put16(at, value & 0xffff);
    put16(at, value >> 16);
}

constexpr int kFileHeader = 14;
constexpr int kInfoHeader = 40;
// Pictures up to this side are written here; the level shots stop at 2048.
constexpr int kLargestWritten = 8192;

// What Qt's bmp writer gives for a picture of 32-bit pixels: a 24-bit bottom-up bmp
// with a 40-byte header, no palette, and rows padded with zeros to four bytes. fill
// writes the blue, green and red bytes of the picture's row y (0 at the top).
template <typename Fill>
QByteArray trueColourBmp(int width, int height, int dotsPerMeterX, int dotsPerMeterY, Fill fill)
{
    const qsizetype row = (static_cast<qsizetype>(width) * 24 + 31) / 32 * 4;
    const qsizetype pixels = row * height;
    const qsizetype padding = row - static_cast<qsizetype>(width) * 3;
    QByteArray bytes(kFileHeader + kInfoHeader + pixels, Qt::Uninitialized);
    char* at = bytes.data();
    *at++ = 'B';
    *at++ = 'M';
    put32(at, static_cast<quint32>(bytes.size()));
    put32(at, 0); // two reserved words
    put32(at, kFileHeader + kInfoHeader);
    put32(at, kInfoHeader);
    put32(at, static_cast<quint32>(width));
    put32(at, static_cast<quint32>(height));
    put16(at, 1);  // planes
    put16(at, 24); // bits per pixel
    put32(at, 0);  // no compression
    put32(at, static_cast<quint32>(pixels));
    put32(at, static_cast<quint32>(dotsPerMeterX ? dotsPerMeterX : 2834));
    put32(at, static_cast<quint32>(dotsPerMeterY ? dotsPerMeterY : 2834));
    put32(at, 0); // colours used
    put32(at, 0); // colours important
    for (int y = height - 1; y >= 0; --y, at += row) {
        fill(y, reinterpret_cast<uchar*>(at));
        std::memset(at + row - padding, 0, static_cast<size_t>(padding));
    }
    return bytes;
}

QByteArray trueColourBmp(const QImage& picture)
{
    const int width = picture.width();
    return trueColourBmp(width, picture.height(), picture.dotsPerMeterX(), picture.dotsPerMeterY(),
                         [&picture, width](int y, uchar* to) {
                             const auto* from = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
                             for (int x = 0; x < width; ++x, to += 3) {
                                 const QRgb pixel = from[x];
                                 to[0] = static_cast<uchar>(qBlue(pixel));
                                 to[1] = static_cast<uchar>(qGreen(pixel));
                                 to[2] = static_cast<uchar>(qRed(pixel));
                             }
                         });
}

quint32 word16(const QByteArray& b, int at) { return quint32(quint8(b[at])) | quint32(quint8(b[at + 1])) << 8; }

// The bmp of an uncompressed true-colour tga with left-to-right rows, taken straight
// from its pixel data, which holds the bmp's blue, green and red bytes already: the
// same bytes as the decoded picture written by bmpBytes. False for any other tga, and
// for one that the reader would refuse; readTgaPicture then has the last word.
bool plainTgaBmp(const QByteArray& tga, QByteArray* bmp)
{
    constexpr int kTgaHeader = 18;
    if (tga.size() < kTgaHeader)
        return false;
    const int idLength = quint8(tga[0]);
    const int mapType = quint8(tga[1]);
    const int type = quint8(tga[2]);
    const int width = static_cast<int>(word16(tga, 12));
    const int height = static_cast<int>(word16(tga, 14));
    const int depth = quint8(tga[16]);
    const int descriptor = quint8(tga[17]);
    if (type != 2 || mapType != 0 || (depth != 24 && depth != 32) || (descriptor & 0x10) || width == 0 || height == 0 ||
        width > kLargestTgaSide || height > kLargestTgaSide)
        return false;
    const int bytesPerPixel = depth / 8;
    const qsizetype start = kTgaHeader + idLength;
    const qsizetype rowBytes = static_cast<qsizetype>(width) * bytesPerPixel;
    if (tga.size() - start < rowBytes * height)
        return false;
    // The picture's resolution is that of a new image, as the decoder's would be.
    const QImage fresh(1, 1, QImage::Format_RGB32);
    const bool topDown = descriptor & 0x20;
    const auto* data = reinterpret_cast<const uchar*>(tga.constData()) + start;
    auto fill = [&](int y, uchar* to) {
        const uchar* from = data + (topDown ? y : height - 1 - y) * rowBytes;
        if (bytesPerPixel == 3) {
            std::memcpy(to, from, static_cast<size_t>(rowBytes));
            return;
        }
        for (int x = 0; x < width; ++x, to += 3, from += 4) {
            to[0] = from[0];
            to[1] = from[1];
            to[2] = from[2];
        }
    };
    *bmp = trueColourBmp(width, height, fresh.dotsPerMeterX(), fresh.dotsPerMeterY(), fill);
    return true;
}

} // namespace

QByteArray bmpBytes(const QImage& picture)
{
    // The colours of 32-bit pixels are written as they are, the alpha left out, as Qt
    // does after its conversion to RGB32; any other picture goes through Qt's writer.
    const QImage::Format format = picture.format();
    if ((format == QImage::Format_RGB32 || format == QImage::Format_ARGB32) && !picture.isNull() &&
        picture.width() <= kLargestWritten && picture.height() <= kLargestWritten)
        return trueColourBmp(picture);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.convertToFormat(QImage::Format_RGB32).save(&buffer, "BMP");
    return bytes;
}

PreparedShot prepareShot(const PackedEntry& packed)
{
    PreparedShot shot;
    QByteArray tga;
    if (!unpackExactly(packed, &tga))
        return shot;
    shot.verified = true;
    if (plainTgaBmp(tga, &shot.bmp))
        return shot;
    const QImage picture = readTgaPicture(tga, &shot.fault);
    if (!picture.isNull())
        shot.bmp = bmpBytes(picture);
    return shot;
}

} // namespace steward
