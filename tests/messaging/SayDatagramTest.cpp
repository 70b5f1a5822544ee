// The say datagram byte for byte: four 0xFF bytes, the remote console word, the
// password as typed, and the line as it stands.
#include "messaging/SayDatagram.h"

#include <gtest/gtest.h>

using namespace steward;

namespace {
QByteArray oob(const char* rest, int size = -1)
{
    return QByteArray(4, '\xff') + (size < 0 ? QByteArray(rest) : QByteArray(rest, size));
}
} // namespace

TEST(SayDatagram, BothFormsByteForByte)
{
    struct Case {
        const char* what;
        QString password;
        QString text;
        QByteArray bytes;
    };
    const Case cases[] = {
        {"password", QStringLiteral("secret"), QStringLiteral("hello"), oob("rcon secret say hello")},
        {"colour codes as they stand", QStringLiteral("pw"),
         QStringLiteral("^2This Server was configured by ^1Arena Steward"),
         oob("rcon pw say ^2This Server was configured by ^1Arena Steward")},
        {"blanks in and around the password are kept", QStringLiteral(" my pass "), QStringLiteral("x"),
         oob("rcon  my pass  say x")},
        {"no password: the say follows the word directly", QString(), QStringLiteral("^3hi"), oob("rcon say ^3hi")},
        {"a blank password is a password", QStringLiteral(" "), QStringLiteral("hi"), oob("rcon   say hi")},
        {"a character above 127 is its Latin-1 byte", QStringLiteral("p\u00e4ss"), QStringLiteral("caf\u00e9 \u00ff"),
         oob("rcon p\xe4ss say caf\xe9 \xff")},
        {"a character outside Latin-1 becomes a question mark", QStringLiteral("pw"), QStringLiteral("5 \u20ac"),
         oob("rcon pw say 5 ?")},
        {"quotes, semicolons and a trailing blank go as they stand", QStringLiteral("pw"),
         QStringLiteral("a \"b\"; quit "), oob("rcon pw say a \"b\"; quit ")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(sayDatagram(c.password, c.text), c.bytes);
    }
}

TEST(SayDatagram, HasNoTerminatorAndKeepsANulInTheText)
{
    const QByteArray d = sayDatagram(QStringLiteral("pw"), QStringLiteral("a") + QChar(0) + QStringLiteral("b"));
    EXPECT_EQ(d, oob("rcon pw say a\0b", 15));
    EXPECT_FALSE(d.endsWith('\n'));
}
