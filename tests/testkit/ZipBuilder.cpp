#include "testkit/ZipBuilder.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <zip.h>

namespace steward::testing {

ZipBuilder& ZipBuilder::file(const QString& name, const QByteArray& data, bool stored)
{
    m_items.push_back({name, data, Kind::File, false, stored});
    return *this;
}

ZipBuilder& ZipBuilder::readOnlyFile(const QString& name, const QByteArray& data)
{
    m_items.push_back({name, data, Kind::File, true, false});
    return *this;
}

ZipBuilder& ZipBuilder::folder(const QString& name)
{
    m_items.push_back({name, {}, Kind::Folder, false, false});
    return *this;
}

ZipBuilder& ZipBuilder::symlink(const QString& name, const QString& target)
{
    m_items.push_back({name, target.toUtf8(), Kind::Link, false, true});
    return *this;
}

bool ZipBuilder::write(const QString& path) const
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile::remove(path);
    int code = 0;
    zip_t* archive = zip_open(QFile::encodeName(path).constData(), ZIP_CREATE | ZIP_TRUNCATE, &code);
    if (!archive)
        return false;
    bool ok = true;
    for (const Item& item : m_items) {
        const QByteArray name = item.name.toUtf8();
        zip_int64_t index = -1;
        if (item.kind == Kind::Folder) {
            index = zip_dir_add(archive, name.constData(), ZIP_FL_ENC_UTF_8);
        } else {
            zip_source_t* source =
                zip_source_buffer(archive, item.data.constData(), static_cast<zip_uint64_t>(item.data.size()), 0);
            if (!source) {
                ok = false;
                break;
            }
            index = zip_file_add(archive, name.constData(), source, ZIP_FL_ENC_UTF_8);
            if (index < 0)
                zip_source_free(source);
        }
        if (index < 0) {
            ok = false;
            break;
        }
        const auto at = static_cast<zip_uint64_t>(index);
        if (item.kind != Kind::Folder)
            zip_set_file_compression(archive, at, item.stored ? ZIP_CM_STORE : ZIP_CM_DEFLATE, 0);
        zip_uint32_t mode = 0;
        if (item.kind == Kind::Link)
            mode = S_IFLNK | 0777;
        else if (item.kind == Kind::Folder)
            mode = S_IFDIR | 0755;
        else
            mode = S_IFREG | (item.readOnly ? 0444 : 0644);
        zip_file_set_external_attributes(archive, at, 0, ZIP_OPSYS_UNIX, mode << 16);
    }
    if (!ok) {
        zip_discard(archive);
        return false;
    }
    return zip_close(archive) == 0;
}

namespace {
quint32 read32(const QByteArray& b, qsizetype at)
{
    return static_cast<quint8>(b[at]) | static_cast<quint8>(b[at + 1]) << 8 | static_cast<quint8>(b[at + 2]) << 16 |
           static_cast<quint32>(static_cast<quint8>(b[at + 3])) << 24;
}
quint16 read16(const QByteArray& b, qsizetype at)
{
    return static_cast<quint16>(static_cast<quint8>(b[at]) | static_cast<quint8>(b[at + 1]) << 8);
}
void write32(QByteArray& b, qsizetype at, quint32 v)
{
    for (int i = 0; i < 4; ++i)
        b[at + i] = static_cast<char>((v >> (8 * i)) & 0xff);
}
} // namespace

bool patchClaimedSize(const QString& archive, const QString& entryName, quint32 size)
{
    QFile file(archive);
    if (!file.open(QIODevice::ReadWrite))
        return false;
    QByteArray bytes = file.readAll();
    const QByteArray name = entryName.toUtf8();
    bool patched = false;
    // Central directory headers: signature, sizes at 20 and 24, name length at 28,
    // local header offset at 42, name at 46.
    for (qsizetype at = bytes.indexOf("PK\x01\x02"); at >= 0; at = bytes.indexOf("PK\x01\x02", at + 4)) {
        if (at + 46 > bytes.size())
            break;
        const quint16 nameLength = read16(bytes, at + 28);
        if (bytes.mid(at + 46, nameLength) != name)
            continue;
        write32(bytes, at + 24, size);
        const quint32 local = read32(bytes, at + 42);
        if (local + 30 <= static_cast<quint32>(bytes.size()))
            write32(bytes, local + 22, size);
        patched = true;
    }
    if (!patched)
        return false;
    file.seek(0);
    return file.write(bytes) == bytes.size();
}

bool truncateFile(const QString& path, qint64 size) { return QFile::resize(path, size); }

QByteArray tgaHeader(int type, int width, int height, int depth, int descriptor)
{
    QByteArray h(18, '\0');
    h[2] = static_cast<char>(type);
    h[12] = static_cast<char>(width & 0xff);
    h[13] = static_cast<char>(width >> 8);
    h[14] = static_cast<char>(height & 0xff);
    h[15] = static_cast<char>(height >> 8);
    h[16] = static_cast<char>(depth);
    h[17] = static_cast<char>(descriptor);
    return h;
}

QByteArray tgaPicture(int width, int height, quint8 red, quint8 green, quint8 blue)
{
    QByteArray out = tgaHeader(2, width, height, 24); // uncompressed true colour, top row first
    out.reserve(18 + width * height * 3);
    for (int i = 0; i < width * height; ++i) {
        out += static_cast<char>(blue);
        out += static_cast<char>(green);
        out += static_cast<char>(red);
    }
    return out;
}

QByteArray arenaScript(const QString& map, const QString& longName, const QString& type)
{
    return QStringLiteral("{\r\nmap \"%1\"\r\nlongname \"%2\"\r\ntype \"%3\"\r\n}\r\n")
        .arg(map, longName, type)
        .toLatin1();
}

} // namespace steward::testing
