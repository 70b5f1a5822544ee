#pragma once
// A tga level shot made ready on a worker thread straight from its packed data in the
// archive: unpacked, checked against the sizes and checksum that the archive's
// directory gives, decoded and encoded as a bmp, all in memory. Only data that passes
// every check counts; anything else is left to the archive reader, whose own reading
// then gives the same picture or the same error as ever.
#include "maps/ArchiveReader.h"
#include "maps/TgaPicture.h"

#include <QByteArray>

namespace steward {

struct PreparedShot {
    bool verified = false; ///< the data unpacked whole and its checksum matched
    TgaFault fault = TgaFault::None;
    QByteArray bmp; ///< the bmp file's bytes; empty when there is no picture
};

/// The data of a stored or deflated entry, when it unpacks to exactly the size and
/// checksum claimed, with the whole packed data used; false otherwise.
bool unpackExactly(const PackedEntry& packed, QByteArray* data);

/// The bmp of a tga entry's packed data.
PreparedShot prepareShot(const PackedEntry& packed);

/// The bytes of the bmp file of a picture.
QByteArray bmpBytes(const QImage& picture);

} // namespace steward
