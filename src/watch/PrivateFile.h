#pragma once
// Files that only their owner may read: the watcher's state, logs and the settings a
// server was started with hold passwords.
#include <QByteArray>
#include <QString>

namespace steward {

/// Replaces the file in one step (a file beside it, then a rename), mode 0600. False
/// with the reason in error when it could not be written; the old file then stays.
bool writePrivateFile(const QString& path, const QByteArray& bytes, QString* error = nullptr);

/// Appends to the file, creating it with mode 0600. False when it could not be written.
bool appendPrivateFile(const QString& path, const QByteArray& bytes);

/// Makes the folder and its parents; the last one readable by its owner only.
bool makePrivateFolder(const QString& path, QString* error = nullptr);

} // namespace steward
