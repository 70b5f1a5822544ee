// The reader of the map catalogue that fills the tree.
#include "FuzzInput.h"
#include "maps/MapTree.h"

using namespace steward;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    CatalogueReader reader(QByteArray(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size)));
    MapEntry entry;
    // Every record takes at least one byte of the stream.
    size_t records = 0;
    while (!reader.atEnd() && reader.read(entry))
        fuzz::require(++records <= size, "the reader moves on with every record");
    return 0;
}
