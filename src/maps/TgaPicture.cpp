#include "maps/TgaPicture.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>

namespace steward {

namespace {

constexpr int kHeader = 18;
constexpr qint64 kMostPixels = 8192LL * 8192;

int word(const QByteArray& b, int at) { return static_cast<quint8>(b[at]) | static_cast<quint8>(b[at + 1]) << 8; }

// Unpacks run-length encoded pixels; false when the data ends early.
bool unpackRuns(const QByteArray& in, qsizetype from, int bytesPerPixel, qint64 pixels, QByteArray& out)
{
    out.reserve(pixels * bytesPerPixel);
    qint64 done = 0;
    qsizetype at = from;
    while (done < pixels) {
        if (at >= in.size())
            return false;
        const quint8 packet = static_cast<quint8>(in[at++]);
        const int count = (packet & 0x7f) + 1;
        if (done + count > pixels)
            return false;
        if (packet & 0x80) {
            if (at + bytesPerPixel > in.size())
                return false;
            const QByteArray pixel = in.mid(at, bytesPerPixel);
            at += bytesPerPixel;
            for (int i = 0; i < count; ++i)
                out += pixel;
        } else {
            const qsizetype length = static_cast<qsizetype>(count) * bytesPerPixel;
            if (at + length > in.size())
                return false;
            out += in.mid(at, length);
            at += length;
        }
        done += count;
    }
    return true;
}

} // namespace

QImage readTgaPicture(const QByteArray& bytes)
{
    if (bytes.size() < kHeader)
        return {};
    const int idLength = static_cast<quint8>(bytes[0]);
    const int mapType = static_cast<quint8>(bytes[1]);
    const int type = static_cast<quint8>(bytes[2]);
    const int mapLength = word(bytes, 5);
    const int mapEntryBits = static_cast<quint8>(bytes[7]);
    const int width = word(bytes, 12);
    const int height = word(bytes, 14);
    int depth = static_cast<quint8>(bytes[16]);
    int descriptor = static_cast<quint8>(bytes[17]);
    const qint64 pixels = static_cast<qint64>(width) * height;
    if (pixels == 0 || pixels > kMostPixels)
        return {};

    const bool grey = type == 3 || type == 11;
    const bool runs = type == 10 || type == 11;
    if (!(type == 2 || type == 10 || grey))
        return {};
    if (grey ? depth != 8 : (depth != 16 && depth != 24 && depth != 32))
        return {};
    const int bytesPerPixel = depth / 8;
    const qsizetype start = kHeader + idLength + (mapType ? static_cast<qsizetype>(mapLength) * ((mapEntryBits + 7) / 8) : 0);

    QByteArray data;
    if (runs) {
        if (!unpackRuns(bytes, start, bytesPerPixel, pixels, data))
            return {};
    } else {
        if (start + pixels * bytesPerPixel > bytes.size())
            return {};
        data = bytes.mid(start, pixels * bytesPerPixel);
    }
    if (grey) {
        QByteArray colour;
        colour.reserve(data.size() * 3);
        for (char g : std::as_const(data))
            colour.append(3, g);
        data = colour;
        depth = 24;
        descriptor &= 0x30; // no alpha bits
    }

    QByteArray plain(kHeader, '\0');
    plain[2] = 2;
    plain[12] = bytes[12];
    plain[13] = bytes[13];
    plain[14] = bytes[14];
    plain[15] = bytes[15];
    plain[16] = static_cast<char>(depth);
    plain[17] = static_cast<char>(descriptor);
    plain += data;
    plain += QByteArray(8, '\0');
    plain += QByteArray("TRUEVISION-XFILE.", 17);
    plain += '\0';

    QBuffer buffer(&plain);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "tga");
    return reader.read();
}

QImage readTgaPicture(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > 256LL * 1024 * 1024)
        return {};
    return readTgaPicture(file.readAll());
}

} // namespace steward
