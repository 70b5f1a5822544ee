#include "maps/LevelShotConverter.h"

#include "maps/PackedShot.h"

#include <QFile>
#include <QImage>

namespace steward {

namespace {

TgaFault writeBmp(const QImage& picture, TgaFault fault, const QString& bmpPath)
{
    if (!picture.isNull()) {
        QFile file(bmpPath);
        if (file.open(QIODevice::WriteOnly))
            file.write(bmpBytes(picture));
    }
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

void LevelShotConverter::run(ConvertedShot* result, std::function<TgaFault()> job)
{
    if (m_inline) {
        result->fault = job();
        return;
    }
    m_room.acquire();
    m_pool.start([this, result, job = std::move(job)] {
        result->fault = job();
        m_room.release();
    });
}

void LevelShotConverter::add(const QString& name, QByteArray tga, const QString& bmpPath)
{
    m_results.push_back({name, TgaFault::None});
    run(&m_results.back(), [tga = std::move(tga), bmpPath] { return convertTgaToBmpFile(tga, bmpPath); });
}

void LevelShotConverter::addDecoded(const QString& name, TgaFault fault, QByteArray bmp, const QString& bmpPath)
{
    m_results.push_back({name, fault});
    if (bmp.isEmpty())
        return;
    run(&m_results.back(), [fault, bmp = std::move(bmp), bmpPath] {
        QFile file(bmpPath);
        if (file.open(QIODevice::WriteOnly))
            file.write(bmp);
        return fault;
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
