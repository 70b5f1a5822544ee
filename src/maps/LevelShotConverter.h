#pragma once
// The conversion of tga level shots to bmp files on the worker threads, while the
// scan goes on reading archives. Each picture is decoded and written by one job; the
// results come back in the order the pictures were given, whatever the threads did
// first, so the outcome is that of one thread.
#include "maps/TgaPicture.h"

#include <QByteArray>
#include <QSemaphore>
#include <QString>
#include <QThreadPool>
#include <deque>
#include <functional>
#include <vector>

namespace steward {

/// Decodes a tga level shot and writes it as a bmp file at bmpPath; the fault why
/// there is no bmp. An existing bmp is replaced.
TgaFault convertTgaToBmpFile(const QByteArray& tga, const QString& bmpPath);
TgaFault convertTgaToBmpFile(const QString& tgaPath, const QString& bmpPath);

struct ConvertedShot {
    QString name; ///< the tga file name the picture had
    TgaFault fault = TgaFault::None;
};

class LevelShotConverter {
public:
    /// threads 0 converts on the calling thread, at once.
    explicit LevelShotConverter(int threads = QThread::idealThreadCount());
    ~LevelShotConverter();
    LevelShotConverter(const LevelShotConverter&) = delete;
    LevelShotConverter& operator=(const LevelShotConverter&) = delete;

    /// Converts the picture to bmpPath on a worker. No two pictures given between two
    /// calls of finish may name the same bmp. When enough pictures wait, the call waits
    /// for one to be done, so that memory stays bounded.
    void add(const QString& name, QByteArray tga, const QString& bmpPath);
    /// A picture decoded already: its bmp bytes are written to bmpPath on a worker
    /// (nothing when there are none), and the fault is its result.
    void addDecoded(const QString& name, TgaFault fault, QByteArray bmp, const QString& bmpPath);
    /// Waits for every picture and gives the results in the order they were added;
    /// the converter is empty afterwards.
    std::vector<ConvertedShot> finish();
    /// The worker threads, for other work of the scan beside the conversion.
    QThreadPool& pool() { return m_pool; }

private:
    void run(ConvertedShot* result, std::function<TgaFault()> job);

    QThreadPool m_pool;
    bool m_inline;
    QSemaphore m_room;
    std::deque<ConvertedShot> m_results; // stable addresses while jobs write into them
};

} // namespace steward
