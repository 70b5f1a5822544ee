#include "maps/TgaPicture.h"

#include <QFile>
#include <cstring>

namespace steward {

namespace {

constexpr int kHeader = 18;
// A run-length packet is a count byte and at least one pixel, and gives at most 128
// pixels.
constexpr qint64 kLongestRun = 128;

int word(const QByteArray& b, int at) { return static_cast<quint8>(b[at]) | static_cast<quint8>(b[at + 1]) << 8; }

// Unpacks run-length encoded pixels; false when the data ends early or runs over.
bool unpackRuns(const QByteArray& in, qsizetype from, int bytesPerPixel, qint64 pixels, QByteArray& out)
{
    out.resize(pixels * bytesPerPixel);
    char* to = out.data();
    const char* const end = to + out.size();
    const char* at = in.constData() + from;
    const char* const last = in.constData() + in.size();
    while (to < end) {
        if (at >= last)
            return false;
        const quint8 packet = static_cast<quint8>(*at++);
        const qsizetype length = static_cast<qsizetype>((packet & 0x7f) + 1) * bytesPerPixel;
        if (to + length > end)
            return false;
        if (packet & 0x80) {
            if (at + bytesPerPixel > last)
                return false;
            for (qsizetype i = 0; i < length; i += bytesPerPixel)
                std::memcpy(to + i, at, static_cast<size_t>(bytesPerPixel));
            at += bytesPerPixel;
        } else {
            if (at + length > last)
                return false;
            std::memcpy(to, at, static_cast<size_t>(length));
            at += length;
        }
        to += length;
    }
    return true;
}

inline QRgb pixelAt(const uchar* p, int depth, bool alpha)
{
    switch (depth) {
    case 8:
        return qRgb(p[0], p[0], p[0]);
    case 16: {
        const int v = p[0] | p[1] << 8;
        const int r = (v >> 10) & 0x1f, g = (v >> 5) & 0x1f, b = v & 0x1f;
        return qRgb(r << 3 | r >> 2, g << 3 | g >> 2, b << 3 | b >> 2);
    }
    case 24:
        return qRgb(p[2], p[1], p[0]);
    default:
        return alpha ? qRgba(p[2], p[1], p[0], p[3]) : qRgb(p[2], p[1], p[0]);
    }
}

// One row of pixels, with the depth known to the compiler.
template <int Depth, bool Alpha>
void fillRow(QRgb* line, const uchar* from, int width, bool rightToLeft)
{
    constexpr int step = Depth / 8;
    if (rightToLeft) {
        for (int x = width - 1; x >= 0; --x, from += step)
            line[x] = pixelAt(from, Depth, Alpha);
    } else {
        for (int x = 0; x < width; ++x, from += step)
            line[x] = pixelAt(from, Depth, Alpha);
    }
}

// The picture of unpacked pixel data, rows and columns in the order the descriptor
// gives; a null image when there is no memory for it.
QImage pictureOf(const uchar* data, int width, int height, int depth, int descriptor)
{
    const int bytesPerPixel = depth / 8;
    const bool alpha = depth == 32 && (descriptor & 0x0f) != 0;
    QImage image(width, height, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (image.isNull())
        return image;
    const bool topDown = descriptor & 0x20;
    const bool rightToLeft = descriptor & 0x10;
    auto fill = depth == 8    ? fillRow<8, false>
                : depth == 16 ? fillRow<16, false>
                : depth == 24 ? fillRow<24, false>
                : alpha       ? fillRow<32, true>
                              : fillRow<32, false>;
    for (int row = 0; row < height; ++row) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(topDown ? row : height - 1 - row));
        fill(line, data + static_cast<qsizetype>(row) * width * bytesPerPixel, width, rightToLeft);
    }
    return image;
}

} // namespace

QImage readTgaPicture(const QByteArray& bytes, TgaFault* fault)
{
    TgaFault ignored = TgaFault::None;
    TgaFault& why = fault ? *fault : ignored;
    why = TgaFault::Damaged;
    if (bytes.size() < kHeader)
        return {};
    const int idLength = static_cast<quint8>(bytes[0]);
    const int mapType = static_cast<quint8>(bytes[1]);
    const int type = static_cast<quint8>(bytes[2]);
    const int mapLength = word(bytes, 5);
    const int mapEntryBits = static_cast<quint8>(bytes[7]);
    const int width = word(bytes, 12);
    const int height = word(bytes, 14);
    const int depth = static_cast<quint8>(bytes[16]);
    const int descriptor = static_cast<quint8>(bytes[17]);
    const qint64 pixels = static_cast<qint64>(width) * height;
    if (pixels == 0)
        return {};
    if (width > kLargestTgaSide || height > kLargestTgaSide) {
        why = TgaFault::TooLarge;
        return {};
    }

    const bool grey = type == 3 || type == 11;
    const bool runs = type == 10 || type == 11;
    if (!(type == 2 || type == 10 || grey))
        return {};
    if (grey ? depth != 8 : (depth != 16 && depth != 24 && depth != 32))
        return {};
    const int bytesPerPixel = depth / 8;
    const qsizetype start =
        kHeader + idLength + (mapType ? static_cast<qsizetype>(mapLength) * ((mapEntryBits + 7) / 8) : 0);
    // The data must be able to fill the picture before memory is taken for it.
    const qint64 leastData =
        runs ? (pixels + kLongestRun - 1) / kLongestRun * (1 + bytesPerPixel) : pixels * bytesPerPixel;
    if (start > bytes.size() || bytes.size() - start < leastData)
        return {};

    QByteArray unpacked;
    const uchar* data = nullptr;
    if (runs) {
        if (!unpackRuns(bytes, start, bytesPerPixel, pixels, unpacked))
            return {};
        data = reinterpret_cast<const uchar*>(unpacked.constData());
    } else {
        data = reinterpret_cast<const uchar*>(bytes.constData()) + start;
    }

    QImage image = pictureOf(data, width, height, depth, descriptor);
    if (image.isNull())
        return {};
    why = TgaFault::None;
    return image;
}

QImage readTgaPicture(const QString& path, TgaFault* fault)
{
    if (fault)
        *fault = TgaFault::Damaged;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // The header alone tells a picture that is too large; its data isn't read then.
    const QByteArray head = file.peek(kHeader);
    if (head.size() == kHeader && word(head, 12) > 0 && word(head, 14) > 0 &&
        (word(head, 12) > kLargestTgaSide || word(head, 14) > kLargestTgaSide)) {
        if (fault)
            *fault = TgaFault::TooLarge;
        return {};
    }
    if (file.size() > 256LL * 1024 * 1024)
        return {};
    return readTgaPicture(file.readAll(), fault);
}

} // namespace steward
