#include "platform/TerminationSignals.h"

#include <QSocketNotifier>

#include <csignal>
#include <sys/socket.h>
#include <unistd.h>

namespace steward {

namespace {

int signalPair[2] = {-1, -1};

extern "C" void forwardSignal(int number)
{
    const unsigned char byte = static_cast<unsigned char>(number);
    [[maybe_unused]] const ssize_t written = ::write(signalPair[0], &byte, 1);
}

void install(int number)
{
    struct sigaction action = {};
    action.sa_handler = forwardSignal;
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
}

void restore(int number)
{
    struct sigaction action = {};
    action.sa_handler = SIG_DFL;
    sigemptyset(&action.sa_mask);
    ::sigaction(number, &action, nullptr);
}

} // namespace

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent)
{
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, signalPair) != 0)
        return;
    m_notifier = new QSocketNotifier(signalPair[1], QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &TerminationSignals::readSignal);
    for (int number : {SIGTERM, SIGINT, SIGHUP})
        install(number);
}

TerminationSignals::~TerminationSignals()
{
    for (int number : {SIGTERM, SIGINT, SIGHUP})
        restore(number);
    delete m_notifier;
    for (int& fd : signalPair) {
        if (fd >= 0)
            ::close(fd);
        fd = -1;
    }
}

void TerminationSignals::readSignal()
{
    unsigned char byte = 0;
    if (::read(signalPair[1], &byte, 1) != 1)
        return;
    if (byte == SIGHUP)
        emit hangup();
    else
        emit terminationRequested(byte);
}

} // namespace steward
