// The reader of a saved configuration file (.asc).
#include "FuzzInput.h"
#include "settings/ConfigurationFile.h"
#include "support/Errors.h"

using namespace steward;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    try {
        const QStringList fields = readConfigurationFields(QString::fromLatin1(fuzz::bytesOf(data, size)));
        fuzz::require(fields.size() % 2 == 0 && !fields.isEmpty(), "the fields come in pairs");
    } catch (const RuntimeError&) {
        // A file that isn't a configuration file is reported to the user.
    }
    return 0;
}
