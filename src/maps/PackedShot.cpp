#include "maps/PackedShot.h"

#include <QBuffer>
#include <QImage>

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
    const uLong sum = crc32(crc32(0L, Z_NULL, 0), reinterpret_cast<const Bytef*>(data->constData()),
                            static_cast<uInt>(data->size()));
    return sum == packed.crc;
}

QByteArray bmpBytes(const QImage& picture)
{
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
    const QImage picture = readTgaPicture(tga, &shot.fault);
    if (!picture.isNull())
        shot.bmp = bmpBytes(picture);
    return shot;
}

} // namespace steward
