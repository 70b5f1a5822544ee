#pragma once
// The archives of one map scan, each opened once: the table of contents that the first
// phase reads is kept for the later phases, and each archive's file is closed between
// its uses, so that a base folder of any size holds no more than a few files open.
// The archives' tables of contents may be read a few archives ahead on worker threads;
// an archive read ahead is the same reader that open would have made.
#include "maps/ArchiveReader.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <QThreadPool>
#include <deque>
#include <future>
#include <memory>

namespace steward {

class ArchiveShelf {
public:
    /// How many archives are read ahead of the one opened.
    static constexpr int kAhead = 8;

    ~ArchiveShelf();

    /// The archive at path with its selection cleared: the kept one while its file is
    /// unchanged, else opened anew, with the errors of ArchiveReader::open.
    ArchiveReader& open(const QString& path);
    /// The kept archive at path while its file is unchanged, as it is; nothing is
    /// opened and its selection stays.
    ArchiveReader* kept(const QString& path) const;
    /// The number of archives kept.
    int size() const { return static_cast<int>(m_kept.size()); }

    /// The archives that open will be asked for next, in that order: each is opened on
    /// the pool's threads a few archives ahead. An archive that fails there, or whose
    /// file changes before open takes it, is opened again by open itself.
    void readAhead(QThreadPool& pool, QStringList paths);
    /// Stops reading ahead; what was read ahead and not taken is let go.
    void stopReadingAhead();

private:
    struct Ahead {
        QString path;
        std::shared_ptr<ArchiveReader> reader; // read by the job, taken when it is done
        std::future<bool> opened;
    };
    void startAhead(qsizetype last);
    std::shared_ptr<ArchiveReader> takeAhead(const QString& path);

    QHash<QString, std::shared_ptr<ArchiveReader>> m_kept;
    QThreadPool* m_pool = nullptr;
    QStringList m_ahead;  // the archives to read ahead, in the order open takes them
    qsizetype m_next = 0; // the first of them not started yet
    std::deque<Ahead> m_pending;
};

} // namespace steward
