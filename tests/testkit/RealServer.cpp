#include "testkit/RealServer.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QFileInfo>
#include <QThread>
#include <QUdpSocket>

using namespace Qt::StringLiterals;

namespace steward::testing {

const QString kRealEngine = u"/usr/lib/ioquake3/ioq3ded"_s;
const QString kRealGameData = u"/usr/lib/openarena-server"_s;

bool realServerMissing()
{
    if (QFileInfo(kRealEngine).isExecutable() && QFileInfo(kRealGameData + u"/baseoa"_s).isDir())
        return false;
    if (qEnvironmentVariableIntValue("STEWARD_REQUIRE_REAL_SERVER") == 1)
        ADD_FAILURE() << "no Quake 3 engine dedicated server here, and STEWARD_REQUIRE_REAL_SERVER=1 asks for it "
                         "(install Debian's openarena-server, or run with STEWARD_REAL_SERVER=1)";
    return true;
}

QByteArray awaitStatus(quint16 port, int milliseconds, const std::function<bool(const QByteArray&)>& done)
{
    const QDeadlineTimer deadline(milliseconds);
    QByteArray answer;
    for (bool first = true; first || !deadline.hasExpired(); first = false) {
        if (!first)
            QThread::msleep(std::min<qint64>(300, deadline.remainingTime()));
        QUdpSocket socket;
        socket.writeDatagram(QByteArray("\xff\xff\xff\xffgetstatus"), QHostAddress::LocalHost, port);
        if (!socket.waitForReadyRead(static_cast<int>(std::clamp<qint64>(deadline.remainingTime(), 1, 500))))
            continue;
        answer.resize(static_cast<int>(socket.pendingDatagramSize()));
        socket.readDatagram(answer.data(), answer.size());
        if (done(answer))
            break;
    }
    return answer;
}

QByteArray rcon(quint16 port, const QByteArray& command)
{
    QUdpSocket socket;
    socket.writeDatagram(QByteArray("\xff\xff\xff\xffrcon secret ") + command, QHostAddress::LocalHost, port);
    QByteArray answer;
    while (socket.waitForReadyRead(1500)) {
        QByteArray part(static_cast<int>(socket.pendingDatagramSize()), 0);
        socket.readDatagram(part.data(), part.size());
        answer += part;
    }
    return answer;
}

} // namespace steward::testing
