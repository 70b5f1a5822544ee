// The status and remote console reply parsers of the server console, and the colour
// rendering of what they read.
#include "FuzzInput.h"
#include "console/ColourText.h"
#include "console/ConsoleProtocol.h"

using namespace steward;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray datagram = fuzz::bytesOf(data, size);
    replyKind(datagram);
    if (const auto status = parseStatusResponse(datagram))
        for (const auto& player : status->players)
            colourCodesToHtml(player.name);
    if (const auto text = parsePrintReply(datagram)) {
        parseStatusTable(*text);
        rconNote(*text);
        const QString html = colourCodesToHtml(*text);
        fuzz::require(!html.contains(QLatin1String("<script")), "a reply never becomes markup of its own");
    }
    return 0;
}
