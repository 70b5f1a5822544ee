#include "platform/IdlePages.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <sys/mman.h>

namespace steward {

int releaseIdlePages()
{
#ifdef MADV_PAGEOUT
    QFile maps(QStringLiteral("/proc/self/maps"));
    if (!maps.open(QIODevice::ReadOnly))
        return 0;
    int asked = 0;
    // Each line: start-end perms offset device inode path
    for (const QByteArray& line : maps.readAll().split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 6 || !fields.at(5).startsWith('/') || fields.at(1).contains('w'))
            continue;
        const QList<QByteArray> range = fields.at(0).split('-');
        bool okStart = false;
        bool okEnd = false;
        const quintptr start = range.value(0).toULongLong(&okStart, 16);
        const quintptr end = range.value(1).toULongLong(&okEnd, 16);
        if (!okStart || !okEnd || end <= start)
            continue;
        if (::madvise(reinterpret_cast<void*>(start), end - start, MADV_PAGEOUT) == 0)
            ++asked;
    }
    return asked;
#else
    return 0;
#endif
}

} // namespace steward
