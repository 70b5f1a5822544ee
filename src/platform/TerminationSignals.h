#pragma once
// SIGTERM, SIGINT and SIGHUP delivered as Qt signals on the event loop: the handler
// only writes the signal's number into a socket pair, and a notifier reads it there.
// Children started afterwards keep the default handling (exec resets handlers).
#include <QObject>

class QSocketNotifier;

namespace steward {

class TerminationSignals : public QObject {
    Q_OBJECT
public:
    /// Installs the handlers; one object per process.
    explicit TerminationSignals(QObject* parent = nullptr);
    ~TerminationSignals() override;

signals:
    /// SIGTERM or SIGINT arrived.
    void terminationRequested(int signal);
    /// SIGHUP arrived.
    void hangup();

private:
    void readSignal();
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace steward
