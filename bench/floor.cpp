#include "floor.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>
#include <zlib.h>

namespace steward::bench {

namespace {

constexpr std::uint32_t kEndSignature = 0x06054b50;
constexpr std::uint32_t kCentralSignature = 0x02014b50;
constexpr std::uint32_t kLocalSignature = 0x04034b50;
constexpr std::size_t kEndSize = 22;
constexpr std::size_t kCentralSize = 46;
constexpr std::size_t kLocalSize = 30;

std::uint32_t u16(const unsigned char* p) { return p[0] | (p[1] << 8); }
std::uint32_t u32(const unsigned char* p)
{
    return p[0] | (p[1] << 8) | (p[2] << 16) | (static_cast<std::uint32_t>(p[3]) << 24);
}

bool endsWithNoCase(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() &&
           std::equal(end.begin(), end.end(), text.end() - static_cast<std::ptrdiff_t>(end.size()), [](char a, char b) {
               return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
           });
}

bool equalNoCase(std::string_view a, std::string_view b) { return a.size() == b.size() && endsWithNoCase(a, b); }

bool isStock(std::string_view map)
{
    return std::any_of(std::begin(kStockMapNames), std::end(kStockMapNames),
                       [map](const char* stock) { return map == stock; });
}

bool readAt(int fd, unsigned char* into, std::size_t size, off_t offset)
{
    while (size > 0) {
        const ssize_t got = pread(fd, into, size, offset);
        if (got <= 0)
            return false;
        into += got;
        size -= static_cast<std::size_t>(got);
        offset += got;
    }
    return true;
}

struct Entry {
    std::string_view name;
    std::uint32_t method;
    std::uint32_t packed;
    std::uint32_t size;
    std::uint32_t local;
};

// One archive's reads; the buffers and the inflater live across archives.
class Reader {
public:
    Reader() { inflateInit2(&m_z, -MAX_WBITS); }
    ~Reader() { inflateEnd(&m_z); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    bool archive(const std::string& path, bool maps, bool stockOnly, FloorCount& count);

private:
    bool directory(int fd, std::vector<Entry>& entries);
    bool entry(int fd, const Entry& e, FloorCount& count);

    z_stream m_z{};
    std::vector<unsigned char> m_directory;
    std::vector<unsigned char> m_packed;
    std::vector<unsigned char> m_out;
};

bool Reader::directory(int fd, std::vector<Entry>& entries)
{
    struct stat info {};
    if (fstat(fd, &info) != 0 || info.st_size < static_cast<off_t>(kEndSize))
        return false;
    const auto fileSize = static_cast<std::size_t>(info.st_size);
    // The end record sits in the last 64 KB and 22 bytes; so does the whole directory
    // of a small archive, which then needs no second read.
    const std::size_t tail = std::min(fileSize, kEndSize + 0xffff);
    const std::size_t tailStart = fileSize - tail;
    m_directory.resize(tail);
    if (!readAt(fd, m_directory.data(), tail, static_cast<off_t>(tailStart)))
        return false;
    std::size_t end = tail - kEndSize + 1;
    do {
        --end;
        if (u32(&m_directory[end]) == kEndSignature)
            break;
    } while (end > 0);
    if (u32(&m_directory[end]) != kEndSignature)
        return false;
    const std::uint32_t count = u16(&m_directory[end + 10]);
    const std::size_t size = u32(&m_directory[end + 12]);
    const std::size_t offset = u32(&m_directory[end + 16]);
    if (offset + size > tailStart + end)
        return false;
    const unsigned char* p;
    if (offset >= tailStart) {
        p = &m_directory[offset - tailStart];
    } else {
        m_directory.resize(size);
        if (!readAt(fd, m_directory.data(), size, static_cast<off_t>(offset)))
            return false;
        p = m_directory.data();
    }
    const unsigned char* const last = p + size;
    entries.clear();
    for (std::uint32_t i = 0; i < count; ++i) {
        if (last - p < static_cast<std::ptrdiff_t>(kCentralSize) || u32(p) != kCentralSignature)
            return false;
        const std::size_t nameSize = u16(p + 28);
        const std::size_t rest = nameSize + u16(p + 30) + u16(p + 32);
        if (static_cast<std::size_t>(last - p) < kCentralSize + rest)
            return false;
        entries.push_back({std::string_view(reinterpret_cast<const char*>(p + kCentralSize), nameSize), u16(p + 10),
                           u32(p + 20), u32(p + 24), u32(p + 42)});
        p += kCentralSize + rest;
    }
    return true;
}

bool Reader::entry(int fd, const Entry& e, FloorCount& count)
{
    unsigned char local[kLocalSize];
    if (!readAt(fd, local, kLocalSize, e.local) || u32(local) != kLocalSignature)
        return false;
    m_packed.resize(e.packed);
    if (!readAt(fd, m_packed.data(), e.packed,
                static_cast<off_t>(e.local + kLocalSize + u16(local + 26) + u16(local + 28))))
        return false;
    if (e.method == 0) {
        count.bytes += e.packed;
        return true;
    }
    if (e.method != Z_DEFLATED)
        return false;
    if (m_out.size() < e.size)
        m_out.resize(e.size);
    inflateReset(&m_z);
    m_z.next_in = m_packed.data();
    m_z.avail_in = e.packed;
    m_z.next_out = m_out.data();
    m_z.avail_out = e.size;
    if (inflate(&m_z, Z_FINISH) != Z_STREAM_END || m_z.total_out != e.size)
        return false;
    count.bytes += e.size;
    return true;
}

bool Reader::archive(const std::string& path, bool maps, bool stockOnly, FloorCount& count)
{
    const int fd = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return false;
    std::vector<Entry> entries;
    bool ok = directory(fd, entries);
    ++count.archives;

    auto leafOf = [](std::string_view name) {
        const auto slash = name.rfind('/');
        return slash == std::string_view::npos ? name : name.substr(slash + 1);
    };
    // The first map that is not a stock one makes the archive a custom map's.
    bool custom = false;
    for (const Entry& e : entries) {
        if (!maps)
            break;
        const std::string_view leaf = leafOf(e.name);
        if (!endsWithNoCase(leaf, "bsp"))
            continue;
        if (isStock(leaf.substr(0, leaf.find('.'))) || stockOnly)
            continue;
        custom = true;
        break;
    }
    if (custom && ok) {
        const auto script = std::find_if(entries.begin(), entries.end(),
                                         [](const Entry& e) { return endsWithNoCase(e.name, "arena"); });
        if (script != entries.end()) {
            ok = entry(fd, *script, count);
            ++count.scripts;
        }
    }
    for (const Entry& e : entries) {
        if (!ok)
            break;
        const auto slash = e.name.rfind('/');
        if (slash == std::string_view::npos || !equalNoCase(e.name.substr(0, slash), "levelshots"))
            continue;
        const std::string_view leaf = e.name.substr(slash + 1);
        const bool tga = endsWithNoCase(leaf, ".tga");
        if (!tga && !endsWithNoCase(leaf, ".jpg"))
            continue;
        ok = entry(fd, e, count);
        ++count.shots;
        count.tgaShots += tga ? 1 : 0;
    }
    close(fd);
    return ok;
}

} // namespace

FloorCount physicalFloor(const std::string& baseFolder)
{
    FloorCount count;
    DIR* folder = opendir(baseFolder.c_str());
    if (!folder) {
        count.error = baseFolder + ": " + std::strerror(errno);
        return count;
    }
    Reader reader;
    while (const dirent* item = readdir(folder)) {
        const std::string_view name = item->d_name;
        if ((item->d_type != DT_REG && item->d_type != DT_UNKNOWN) || !endsWithNoCase(name, "pk3"))
            continue;
        const bool maps = !equalNoCase(name, "assets1.pk3");
        const bool stockOnly = equalNoCase(name, "assets0.pk3");
        if (!reader.archive(baseFolder + '/' + item->d_name, maps, stockOnly, count) && count.error.empty())
            count.error = std::string(name) + ": not a zip archive of stored and deflated entries";
    }
    closedir(folder);
    return count;
}

} // namespace steward::bench
