#include "maps/ShotPrefetch.h"

#include "maps/ArchiveShelf.h"

#include <memory>

namespace steward {

namespace {

QString key(const QString& archive, int index) { return archive + QLatin1Char('|') + QString::number(index); }

} // namespace

ShotPrefetch::ShotPrefetch(QThreadPool& pool) : m_pool(pool) {}

ShotPrefetch::~ShotPrefetch() { m_pool.waitForDone(); }

void ShotPrefetch::setPlan(std::vector<Planned> plan)
{
    m_pool.waitForDone();
    m_ready.clear();
    m_position.clear();
    m_plan = std::move(plan);
    m_next = 0;
    for (size_t i = 0; i < m_plan.size(); ++i)
        m_position.insert(key(m_plan[i].archive, m_plan[i].index), i);
}

void ShotPrefetch::readThrough(ArchiveShelf& shelf, size_t last, const QString& current)
{
    for (; m_next <= last && m_next < m_plan.size(); ++m_next) {
        const Planned& planned = m_plan[m_next];
        auto promise = std::make_shared<std::promise<PreparedShot>>();
        m_ready.emplace_back(m_next, promise->get_future());
        ArchiveReader* reader = shelf.kept(planned.archive);
        auto packed = std::make_shared<PackedEntry>();
        if (!reader || !reader->readPacked(planned.index, packed.get())) {
            promise->set_value(PreparedShot());
            continue;
        }
        if (planned.archive != current)
            reader->park();
        m_pool.start([promise, packed] { promise->set_value(prepareShot(*packed)); });
    }
}

PreparedShot ShotPrefetch::take(ArchiveShelf& shelf, const QString& archive, int index)
{
    const auto found = m_position.constFind(key(archive, index));
    if (found == m_position.constEnd())
        return {};
    const size_t position = *found;
    readThrough(shelf, position + kAhead, archive);
    while (!m_ready.empty() && m_ready.front().first < position)
        m_ready.pop_front(); // passed over by the extraction; its job still ends on its own
    if (m_ready.empty() || m_ready.front().first != position)
        return {};
    PreparedShot shot = m_ready.front().second.get();
    m_ready.pop_front();
    return shot;
}

} // namespace steward
