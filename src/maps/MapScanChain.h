#pragma once
// What the phases of one map scan share when they run as one chain: the archives'
// tables of contents, read once, and the tga level shots that are converted in memory
// on the worker threads while the later archives are read. The phases called alone
// work through files as each has always done; called with the chain they leave the
// same catalogue, files and messages behind.
#include "maps/ArchiveShelf.h"
#include "maps/LevelShotConverter.h"
#include "maps/ShotPrefetch.h"

#include <QHash>
#include <QSet>
#include <QString>

namespace steward {

struct MapScanChain {
    ArchiveShelf archives;
    LevelShotConverter converter;
    ShotPrefetch prefetch{converter.pool()};
    /// For each bmp a tga level shot of the chain would become, how many of the tga
    /// entries still to come become it: only the last one of a name is converted in
    /// memory, the earlier ones go to files as before.
    QHash<QString, int> shotsToCome;
    /// The archives whose tga entries are all counted in shotsToCome.
    QSet<QString> counted;
};

} // namespace steward
