#pragma once
// The remote console's command history: newest last, at most 200 entries, kept in a
// file of the program's data folder across runs. The password never goes into it.
#include <QString>
#include <QStringList>

namespace steward {

class CommandHistory {
public:
    static constexpr int kCapacity = 200;

    /// The history file in the program's folder.
    static QString fileIn(const QString& programFolder);

    /// Reads the file; a missing or unreadable file gives an empty history. Lines past
    /// the capacity are dropped from the oldest end.
    void load(const QString& file);
    /// Writes the file whole (UTF-8, one command a line). False when it can't be written.
    bool save(const QString& file) const;

    /// Adds a command at the newest end and puts the browsing position behind it. Empty
    /// commands, a repeat of the newest entry and any command that holds the password
    /// are not kept.
    void add(const QString& command, const QString& password);

    /// Browsing: the older or newer entry from the current position. Up from the oldest
    /// entry stays there; down from the newest gives an empty line.
    QString older();
    QString newer();

    const QStringList& entries() const { return m_entries; }

private:
    QStringList m_entries;
    int m_position = 0;
};

} // namespace steward
