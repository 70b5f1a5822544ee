#pragma once
// Level shots in tga form. The image library reads only uncompressed true-colour
// files that end in the TGA 2.0 footer, while the game's tools write files without
// the footer, often run-length encoded or grey. Such a file is rewritten in memory
// into the form the library reads; colour-mapped files aren't read.
#include <QByteArray>
#include <QImage>
#include <QString>

namespace steward {

/// The picture of a tga file's bytes, or a null image.
QImage readTgaPicture(const QByteArray& bytes);
QImage readTgaPicture(const QString& path);

} // namespace steward
