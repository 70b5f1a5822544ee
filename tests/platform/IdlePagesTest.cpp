// The real system seams: the host's name and addresses, and an idle process that gives
// back the pages it read to start and goes on working.
#include "platform/HostAddressLookup.h"
#include "platform/IdlePages.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace steward;
using namespace Qt::StringLiterals;

namespace {

TEST(HostAddressLookup, LocalhostIsLoopbackAndTheCardsGiveOutsideAddressesOnly)
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
    for (const QByteArray& address : lookup.interfaceAddresses()) {
        ASSERT_EQ(address.size(), 4);
        EXPECT_NE(static_cast<unsigned char>(address.at(0)), 127);
    }
}

qint64 residentKiB()
{
    QFile status(u"/proc/self/status"_s);
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n'))
        if (line.startsWith("VmRSS:"))
            return line.mid(6).trimmed().split(' ').value(0).toLongLong();
    return -1;
}

TEST(IdlePages, TheProgramsPagesGoBackAndComeAgainWhenUsed)
{
    const qint64 before = residentKiB();
    ASSERT_GT(releaseIdlePages(), 0);
    const qint64 after = residentKiB();
    EXPECT_LT(after, before) << before << " KiB before, " << after << " KiB after";
}

} // namespace
