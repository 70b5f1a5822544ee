// The tga reader of the level shots.
#include "FuzzInput.h"
#include "maps/TgaPicture.h"

using namespace steward;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    TgaFault fault = TgaFault::None;
    const QImage picture = readTgaPicture(fuzz::bytesOf(data, size), &fault);
    fuzz::require(picture.isNull() == (fault != TgaFault::None), "a picture comes exactly when there is no fault");
    fuzz::require(picture.width() <= kLargestTgaSide && picture.height() <= kLargestTgaSide,
                  "no picture is larger than the largest level shot");
    return 0;
}
