#pragma once
// Reads the packed data of the level shots that the chain converts in memory a few
// entries ahead of the extraction, and prepares them on worker threads, so that
// unpacking and decoding run beside the reading. The extraction takes each prepared
// shot when it comes to its entry; nothing it does depends on whether a shot was
// prepared ahead or not.
#include "maps/PackedShot.h"

#include <QHash>
#include <QString>
#include <QThreadPool>
#include <deque>
#include <future>
#include <vector>

namespace steward {
class ArchiveShelf;

class ShotPrefetch {
public:
    struct Planned {
        QString archive;
        int index = 0;
    };
    /// How many shots are read ahead of the one taken.
    static constexpr int kAhead = 12;

    /// The shots are prepared on the pool's threads.
    explicit ShotPrefetch(QThreadPool& pool);
    ~ShotPrefetch();
    ShotPrefetch(const ShotPrefetch&) = delete;
    ShotPrefetch& operator=(const ShotPrefetch&) = delete;

    /// The shots to prepare, in the order the extraction will take them.
    void setPlan(std::vector<Planned> plan);
    /// The prepared shot of an entry, waited for; one that wasn't planned, or whose
    /// data didn't pass, is not verified. The shots planned before it are dropped. The
    /// archive being extracted (current) stays open.
    PreparedShot take(ArchiveShelf& shelf, const QString& archive, int index);

private:
    void readThrough(ArchiveShelf& shelf, size_t last, const QString& current);

    QThreadPool& m_pool;
    std::vector<Planned> m_plan;
    QHash<QString, size_t> m_position; // "archive|index" → place in the plan
    size_t m_next = 0;                 // the first shot of the plan not read yet
    std::deque<std::pair<size_t, std::future<PreparedShot>>> m_ready;
};

} // namespace steward
