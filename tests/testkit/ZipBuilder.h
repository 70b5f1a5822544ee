#pragma once
// Real zip archives for tests and benchmarks, written with libzip: plain files,
// folders, links and read-only files, compressed or stored; and the ways to spoil
// one afterwards.
#include <QByteArray>
#include <QString>
#include <vector>

namespace steward::testing {

class ZipBuilder {
public:
    /// A file; deflated unless stored is set.
    ZipBuilder& file(const QString& name, const QByteArray& data = QByteArray("x"), bool stored = false);
    /// A file the archive marks read-only.
    ZipBuilder& readOnlyFile(const QString& name, const QByteArray& data);
    ZipBuilder& folder(const QString& name);
    /// A symbolic link entry whose data is its target.
    ZipBuilder& symlink(const QString& name, const QString& target);

    /// Writes the archive, replacing a file of that name; creates the folder.
    bool write(const QString& path) const;

private:
    enum class Kind { File, Folder, Link };
    struct Item {
        QString name;
        QByteArray data;
        Kind kind = Kind::File;
        bool readOnly = false;
        bool stored = false;
    };
    std::vector<Item> m_items;
};

/// Makes the archive claim another uncompressed size for an entry, in its central
/// directory and its local header. False when the entry isn't found.
bool patchClaimedSize(const QString& archive, const QString& entryName, quint32 size);
/// Cuts a file down to its first bytes.
bool truncateFile(const QString& path, qint64 size);
/// A tga header: image type, size, bits a pixel and the descriptor byte (0x20: the top
/// row first).
QByteArray tgaHeader(int type, int width, int height, int depth, int descriptor = 0x20);
/// An uncompressed 24-bit tga picture of one colour.
QByteArray tgaPicture(int width, int height, quint8 red, quint8 green, quint8 blue);
/// An arena script of one block.
QByteArray arenaScript(const QString& map, const QString& longName, const QString& type);

} // namespace steward::testing
