#pragma once
// What the map benchmarks share: the base folder of custom archives, the scan command's
// chain in this process without a window, the one-process Python peer (peer.py), and
// the arithmetic of the rounds.
#include <QElapsedTimer>
#include <QString>
#include <QStringList>
#include <vector>

namespace steward::bench {

/// Reproducible bytes that deflate can't shrink.
QByteArray randomBytes(qsizetype size, quint32 seed);
/// Makes base with count archives map0000.pk3 ...: each holds a map, its arena script
/// and a 128 by 128 tga level shot.
bool buildCustomBase(const QString& base, int count);
/// The files of folder that match pattern, without the chain's fallback pictures.
QStringList files(const QString& folder, const QString& pattern);

double seconds(const QElapsedTimer& timer);
double median(std::vector<double> values);
/// The peak of this process's resident memory, in kB.
long vmHwmKb();

struct ChainRun {
    double seconds = 0;
    bool complete = false;
    QStringList otherTexts; ///< boxes besides the question and the closing message
    QStringList catalogue;
    QStringList bmps;
    int jpgs = 0;
    long beforeKb = 0;
    long peakKb = 0;
};
/// The menu command without a window on a fresh, empty program folder; the game
/// folder's base is shared.
ChainRun runChain(const QString& gameFolder);

struct PeerRun {
    bool ok = false;
    double seconds = 0;
    QStringList catalogue;
    QStringList bmps;
};
/// Debian's python3 with Pillow, which the peer needs.
bool peerAvailable();
QString peerPython();
/// peer.py on base, writing into out, which is emptied before and removed after.
PeerRun runPeer(const QString& peerScript, const QString& base, const QString& out);

} // namespace steward::bench
