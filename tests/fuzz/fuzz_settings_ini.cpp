// The reader of the settings file, and the writer on what it read.
#include "FuzzInput.h"
#include "settings/PlainIniFormat.h"

#include <QBuffer>

using namespace steward;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    QByteArray bytes = fuzz::bytesOf(data, size);
    QBuffer in(&bytes);
    in.open(QIODevice::ReadOnly);
    QSettings::SettingsMap map;
    if (!readPlainIni(in, map))
        return 0;
    QByteArray written;
    QBuffer out(&written);
    out.open(QIODevice::WriteOnly);
    fuzz::require(writePlainIni(out, map), "what was read can be written");
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        fuzz::require(unquotePlainIniValue(quotePlainIniValue(it.value().toString())) == it.value().toString(),
                      "a value comes back from its quoted form");
    return 0;
}
