#pragma once
// Level shots in tga form. The game's tools write tga files without the TGA 2.0
// footer, often run-length encoded or grey; the image library's tga plugin reads only
// uncompressed true-colour files with the footer, and reads them a byte at a time.
// This reader takes uncompressed and run-length encoded true-colour (16, 24, 32 bits)
// and grey (8 bits) files, with or without the footer; colour-mapped files aren't read.
#include <QByteArray>
#include <QImage>
#include <QString>

namespace steward {

/// The picture of a tga file's bytes, or a null image.
QImage readTgaPicture(const QByteArray& bytes);
QImage readTgaPicture(const QString& path);

} // namespace steward
