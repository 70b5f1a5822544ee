#pragma once
// Writing an archive entry to a file below a target folder without ever writing outside
// it: the entry's folders are walked down one at a time, each step checked to stay
// below the target folder, links or not; the data goes to a new file beside the target
// that then takes the target's place.
#include <QString>
#include <functional>

namespace steward {

/// Takes one chunk of unpacked data; false when it can't.
using ChunkSink = std::function<bool(const char* data, qint64 size)>;
/// Unpacks an entry into a sink; restart empties what the sink took so far, for a
/// second start from the beginning. False when the sink refused a chunk.
using EntryUnpacker = std::function<bool(const ChunkSink& sink, const std::function<void()>& restart)>;

/// Walks down the folders of entryFolder ("maps/sub") below root, a canonical path,
/// making those that are missing and taking an existing folder of another case as it
/// is. Returns the canonical path of the last one. A step that can't be made or isn't
/// a folder is err::PathFileAccess; for a step that leads out of root, leadsOut is
/// called with the step's path and must throw.
QString makeFoldersBelow(const QString& root, const QString& entryFolder,
                         const std::function<void(const QString& step)>& leadsOut);

/// Writes the data of unpack to target, a file in folder: into a new file beside it
/// first, made exclusively so that nothing standing at its name is ever opened, which
/// then takes the target's place, so a link standing at the target is replaced and
/// never followed. The file is readable by all and writable by its owner unless
/// readOnly. Damaged data (unpack throws) or a failed write (err::PathFileAccess)
/// leaves nothing behind.
void writeReplacing(const QString& folder, const QString& target, bool readOnly, const EntryUnpacker& unpack);

} // namespace steward
