#pragma once
// The critical box of a reported run-time error, whole: its description (the standard
// one unless given), its number and the routine's source.
#include "support/Errors.h"
#include "testkit/BoxExpect.h"

namespace steward::testing {

inline Box errorBox(int number, const QString& source, const QString& description = {})
{
    return {QStringLiteral("arena-steward Error"), Icon::Critical,
            QStringLiteral("Following error occurred in this application:\r\n\r\n%1\r\nNumber: %2\r\nSource: %3")
                .arg(description.isEmpty() ? RuntimeError(number).description() : description)
                .arg(number)
                .arg(source),
            Buttons::Ok};
}

} // namespace steward::testing
