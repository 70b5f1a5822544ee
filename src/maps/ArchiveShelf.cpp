#include "maps/ArchiveShelf.h"

namespace steward {

ArchiveReader& ArchiveShelf::open(const QString& path)
{
    if (const auto kept = m_kept.constFind(path); kept != m_kept.constEnd()) {
        if ((*kept)->isUnchanged()) {
            (*kept)->resetSelection();
            return **kept;
        }
        m_kept.erase(kept);
    }
    auto reader = std::make_shared<ArchiveReader>();
    reader->open(path); // a failure keeps nothing
    m_kept.insert(path, reader);
    return *reader;
}

ArchiveReader* ArchiveShelf::kept(const QString& path) const
{
    const auto kept = m_kept.constFind(path);
    return kept != m_kept.constEnd() && (*kept)->isUnchanged() ? kept->get() : nullptr;
}

} // namespace steward
