#include "maps/LevelShotConverter.h"

#include <QImage>

namespace steward {

namespace {

TgaFault writeBmp(const QImage& picture, TgaFault fault, const QString& bmpPath)
{
    if (!picture.isNull())
        picture.convertToFormat(QImage::Format_RGB32).save(bmpPath, "BMP");
    return fault;
}

// How many pictures may wait or be in work per thread.
constexpr int kWaitingPerThread = 4;

} // namespace

TgaFault convertTgaToBmpFile(const QByteArray& tga, const QString& bmpPath)
{
    TgaFault fault = TgaFault::None;
    const QImage picture = readTgaPicture(tga, &fault);
    return writeBmp(picture, fault, bmpPath);
}

TgaFault convertTgaToBmpFile(const QString& tgaPath, const QString& bmpPath)
{
    TgaFault fault = TgaFault::None;
    const QImage picture = readTgaPicture(tgaPath, &fault);
    return writeBmp(picture, fault, bmpPath);
}

LevelShotConverter::LevelShotConverter(int threads)
    : m_inline(threads <= 0), m_room(std::max(1, threads) * kWaitingPerThread)
{
    m_pool.setMaxThreadCount(std::max(1, threads));
}

LevelShotConverter::~LevelShotConverter() { m_pool.waitForDone(); }

void LevelShotConverter::add(const QString& name, QByteArray tga, const QString& bmpPath)
{
    m_results.push_back({name, TgaFault::None});
    ConvertedShot* result = &m_results.back();
    if (m_inline) {
        result->fault = convertTgaToBmpFile(tga, bmpPath);
        return;
    }
    m_room.acquire();
    m_pool.start([this, result, tga = std::move(tga), bmpPath] {
        result->fault = convertTgaToBmpFile(tga, bmpPath);
        m_room.release();
    });
}

std::vector<ConvertedShot> LevelShotConverter::finish()
{
    m_pool.waitForDone();
    std::vector<ConvertedShot> results(m_results.begin(), m_results.end());
    m_results.clear();
    return results;
}

} // namespace steward
