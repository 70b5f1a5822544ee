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

/// The widest and highest level shot taken; the game's own are at most 512 by 512.
inline constexpr int kLargestTgaSide = 2048;

/// Why a tga file gives no picture.
enum class TgaFault {
    None,
    Damaged,  ///< not a tga of a kind that is read, or its data is short or broken
    TooLarge, ///< wider or higher than kLargestTgaSide
};

/// The picture of a tga file's bytes, or a null image and the fault. A header is
/// checked against the size limit and the data against the picture it claims before
/// any memory is taken for the picture.
QImage readTgaPicture(const QByteArray& bytes, TgaFault* fault = nullptr);
QImage readTgaPicture(const QString& path, TgaFault* fault = nullptr);

} // namespace steward
