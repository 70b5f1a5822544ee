// An idle process gives back the pages it read to start, and goes on working.
#include "platform/IdlePages.h"

#include <QFile>
#include <QString>
#include <gtest/gtest.h>

using namespace steward;
using namespace Qt::StringLiterals;

namespace {

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

} // namespace

TEST(IdlePages, TheProgramsPagesGoBackAndComeAgainWhenUsed)
{
    const qint64 before = residentKiB();
    ASSERT_GT(releaseIdlePages(), 0);
    const qint64 after = residentKiB();
    EXPECT_LT(after, before) << before << " KiB before, " << after << " KiB after";
    // The code paged out runs again as it is needed.
    EXPECT_EQ(QString::number(42), u"42"_s);
}
