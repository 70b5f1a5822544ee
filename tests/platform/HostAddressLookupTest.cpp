#include "platform/HostAddressLookup.h"

#include <gtest/gtest.h>

using namespace steward;
using namespace Qt::StringLiterals;

TEST(HostAddressLookup, TheHostHasANameAndLocalhostIsALoopbackAddress)
{
    HostAddressLookup lookup;
    QString name;
    int error = 0;
    ASSERT_TRUE(lookup.hostName(name, error));
    EXPECT_FALSE(name.isEmpty());

    const QList<QByteArray> found = lookup.addresses(u"localhost"_s);
    ASSERT_FALSE(found.isEmpty());
    EXPECT_EQ(found.first().size(), 4);
    EXPECT_EQ(static_cast<unsigned char>(found.first().at(0)), 127);
}

TEST(HostAddressLookup, TheCardsGiveOutsideAddressesOnly)
{
    HostAddressLookup lookup;
    for (const QByteArray& address : lookup.interfaceAddresses()) {
        ASSERT_EQ(address.size(), 4);
        EXPECT_NE(static_cast<unsigned char>(address.at(0)), 127);
    }
}
