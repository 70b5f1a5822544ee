#include "maps/ArchiveShelf.h"

namespace steward {

ArchiveShelf::~ArchiveShelf() { stopReadingAhead(); }

ArchiveReader& ArchiveShelf::open(const QString& path)
{
    if (const auto kept = m_kept.constFind(path); kept != m_kept.constEnd()) {
        if ((*kept)->isUnchanged()) {
            (*kept)->resetSelection();
            return **kept;
        }
        m_kept.erase(kept);
    }
    std::shared_ptr<ArchiveReader> reader = takeAhead(path);
    if (!reader) {
        reader = std::make_shared<ArchiveReader>();
        reader->open(path); // a failure keeps nothing
    }
    m_kept.insert(path, reader);
    return *reader;
}

ArchiveReader* ArchiveShelf::kept(const QString& path) const
{
    const auto kept = m_kept.constFind(path);
    return kept != m_kept.constEnd() && (*kept)->isUnchanged() ? kept->get() : nullptr;
}

void ArchiveShelf::readAhead(QThreadPool& pool, QStringList paths)
{
    stopReadingAhead();
    m_pool = &pool;
    m_ahead = std::move(paths);
    m_next = 0;
}

void ArchiveShelf::stopReadingAhead()
{
    // A job not done yet ends on its own; it holds what it reads.
    m_pending.clear();
    m_ahead.clear();
    m_next = 0;
    m_pool = nullptr;
}

void ArchiveShelf::startAhead(qsizetype last)
{
    for (; m_pool && m_next <= last && m_next < m_ahead.size(); ++m_next) {
        auto reader = std::make_shared<ArchiveReader>();
        auto promise = std::make_shared<std::promise<bool>>();
        m_pending.push_back({m_ahead.at(m_next), reader, promise->get_future()});
        const QString path = m_ahead.at(m_next);
        m_pool->start([reader, promise, path] {
            bool opened = false;
            try {
                reader->open(path);
                opened = true;
            } catch (...) {
                // open says why when it opens the archive itself
            }
            promise->set_value(opened);
        });
    }
}

std::shared_ptr<ArchiveReader> ArchiveShelf::takeAhead(const QString& path)
{
    if (!m_pool)
        return nullptr;
    const qsizetype place = m_ahead.indexOf(path, m_next - static_cast<qsizetype>(m_pending.size()));
    if (place < 0)
        return nullptr;
    startAhead(place + kAhead);
    while (!m_pending.empty() && m_pending.front().path != path)
        m_pending.pop_front(); // passed over: let go
    if (m_pending.empty())
        return nullptr;
    Ahead ahead = std::move(m_pending.front());
    m_pending.pop_front();
    if (!ahead.opened.get() || !ahead.reader->isUnchanged())
        return nullptr;
    return ahead.reader;
}

} // namespace steward
