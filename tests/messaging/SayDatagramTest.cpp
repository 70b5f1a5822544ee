// The say datagram byte for byte: four 0xFF bytes, the remote console word, the
// password as typed, and the line as it stands.
#include "messaging/SayDatagram.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace Qt::StringLiterals;

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
        {"password", u"secret"_s, u"hello"_s, oob("rcon secret say hello")},
        {"colour codes as they stand", u"pw"_s, u"^2This Server was configured by ^1Arena Steward"_s,
         oob("rcon pw say ^2This Server was configured by ^1Arena Steward")},
        {"blanks in and around the password are kept", u" my pass "_s, u"x"_s, oob("rcon  my pass  say x")},
        {"no password: the say follows the word directly", QString(), u"^3hi"_s, oob("rcon say ^3hi")},
        {"a blank password is a password", u" "_s, u"hi"_s, oob("rcon   say hi")},
        {"a character above 127 is its Latin-1 byte", u"p\u00e4ss"_s, u"caf\u00e9 \u00ff"_s,
         oob("rcon p\xe4ss say caf\xe9 \xff")},
        {"a character outside Latin-1 becomes a question mark", u"pw"_s, u"5 \u20ac"_s, oob("rcon pw say 5 ?")},
        {"quotes, semicolons and a trailing blank go as they stand", u"pw"_s, u"a \"b\"; quit "_s,
         oob("rcon pw say a \"b\"; quit ")},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        EXPECT_EQ(sayDatagram(c.password, c.text), c.bytes);
    }
}

TEST(SayDatagram, HasNoTerminatorAndKeepsANulInTheText)
{
    const QByteArray d = sayDatagram(u"pw"_s, u"a"_s + QChar(0) + u"b"_s);
    EXPECT_EQ(d, oob("rcon pw say a\0b", 15));
    EXPECT_FALSE(d.endsWith('\n'));
}
