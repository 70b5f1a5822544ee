#pragma once
// The archives of one map scan, each opened once: the table of contents that the first
// phase reads is kept for the later phases, and each archive's file is closed between
// its uses, so that a base folder of any size holds no more than one file open.
#include "maps/ArchiveReader.h"

#include <QHash>
#include <QString>
#include <memory>

namespace steward {

class ArchiveShelf {
public:
    /// The archive at path with its selection cleared: the kept one while its file is
    /// unchanged, else opened anew, with the errors of ArchiveReader::open.
    ArchiveReader& open(const QString& path);
    /// The kept archive at path while its file is unchanged, as it is; nothing is
    /// opened and its selection stays.
    ArchiveReader* kept(const QString& path) const;
    /// The number of archives kept.
    int size() const { return static_cast<int>(m_kept.size()); }

private:
    QHash<QString, std::shared_ptr<ArchiveReader>> m_kept;
};

} // namespace steward
