#pragma once
// Where each entry of an archive lies, read from its central directory by the program
// itself, for an archive whose directory says exactly what the zip library read from
// it: then the entries' data can be read later without the library and without a
// second read of the directory. Any archive out of the ordinary (a name that isn't
// plain ASCII, the 64-bit extension, a directory that doesn't end at its end record)
// gives no layout and stays with the library.
#include "maps/ArchiveReader.h"

#include <vector>

namespace steward {
class ArchiveFile;

/// The offsets of the entries' local headers, in the order of entries; false when the
/// archive's directory can't be matched with entries.
bool readZipLayout(ArchiveFile& file, const std::vector<ArchiveEntry>& entries, std::vector<quint64>* offsets);

} // namespace steward
