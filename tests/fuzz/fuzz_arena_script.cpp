// The arena script parser of the map scan.
#include "FuzzInput.h"
#include "maps/ArenaScript.h"
#include "support/TextFile.h"

using namespace steward;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QStringList lines = textLines(fuzz::bytesOf(data, size));
    QString longName, type;
    readArenaScript(lines, longName, type);
    fuzz::require(!longName.contains(QLatin1Char('"')) && !type.contains(QLatin1Char('"')),
                  "a value never holds a double quote");
    fuzz::require(!longName.contains(QLatin1Char('\n')) && !type.contains(QLatin1Char('\n')),
                  "a value never holds a line end");
    return 0;
}
