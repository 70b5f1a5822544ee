#pragma once
// Scripted stand-ins for the system seams. The prompts fake records every box and
// dialog and gives prepared answers: "the next answer is No", "the next dialog
// chooses this file".
#include "platform/Clock.h"
#include "platform/Prompts.h"
#include "platform/System.h"

#include <QDateTime>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace steward::testing {

class FakePrompts : public Prompts {
public:
    struct Shown {
        MessageBoxRequest request;
        Answer answer;
    };
    struct Dialog {
        FileDialogState state;
        bool open;
    };

    Answer messageBox(const MessageBoxRequest& request) override;
    bool fileDialog(FileDialogState& state, bool open) override;
    int screenPointer() const override { return pointer; }
    void setScreenPointer(int value) override
    {
        pointer = value;
        pointerHistory.push_back(value);
    }
    void processEvents() override { ++eventRuns; }
    /// Takes the next prepared text; a null text, or none prepared, is a cancel.
    std::optional<QString> askText(const QString& title, const QString& label, const QString& text) override
    {
        asked.push_back({title, label, text});
        const QString next = typed.isEmpty() ? QString() : typed.takeFirst();
        if (next.isNull())
            return std::nullopt;
        return next;
    }
    struct Asked {
        QString title;
        QString label;
        QString text;
    };
    std::vector<Asked> asked;
    QStringList typed;

    /// The next box gets this answer; without one a box gets its default button's.
    void answerNext(Answer answer) { answers.push_back(answer); }
    /// The next file dialog chooses this path, or is cancelled.
    void chooseFile(const QString& path) { files.push_back(path); }
    void cancelNextDialog() { files.push_back(std::nullopt); }

    /// Texts of the boxes shown, in order.
    QStringList texts() const;
    const Shown& last() const { return shown.back(); }

    std::vector<Shown> shown;
    std::vector<Dialog> dialogs;
    std::deque<Answer> answers;
    std::deque<std::optional<QString>> files;
    int pointer = pointer::Default;
    std::vector<int> pointerHistory;
    int eventRuns = 0;
};

/// Friday the 13th of June 2002, 21:05:33, with fixed formats.
class FixedClock : public Clock {
public:
    QDateTime at = QDateTime(QDate(2002, 6, 13), QTime(21, 5, 33));
    QDateTime now() const override { return at; }
    QString longDate(const QDate& date) const override { return date.toString(QStringLiteral("dddd, MMMM d, yyyy")); }
    QString timeText(const QTime& time) const override { return time.toString(QStringLiteral("h:mm AP")); }
};

class FakeNames : public SystemNames {
public:
    QString computer = QStringLiteral("TESTHOST");
    QString user = QStringLiteral("tester");
    QString computerName() const override { return computer; }
    QString userName() const override { return user; }
};

/// Records every address it is asked to open; succeeds unless told that the desktop
/// has no opener.
class RecordingOpener : public Opener {
public:
    std::vector<QUrl> opened;
    bool desktopHasOpener = true;
    bool open(const QUrl& url) override
    {
        opened.push_back(url);
        return desktopHasOpener;
    }
};

/// Records every start and pretends it went well.
class RecordingLauncher : public ProcessLauncher {
public:
    std::vector<LaunchRequest> started;
    bool startDetached(const LaunchRequest& request, QString*, qint64* = nullptr) override
    {
        started.push_back(request);
        return true;
    }
};

class CountingBeeper : public Beeper {
public:
    int beeps = 0;
    void beep() override { ++beeps; }
};

class FakeInstanceGuard : public InstanceGuard {
public:
    bool otherRunning = false;
    bool otherInstanceRunning() override { return otherRunning; }
};

/// Records each blocking wait instead of sleeping; runs the hook, if any, in its place.
class RecordingWait : public BlockingWait {
public:
    std::vector<int> waits;
    std::function<void()> during;
    void wait(int milliseconds) override
    {
        waits.push_back(milliseconds);
        if (during)
            during();
    }
};

/// A socket that records what is done to it in a journal that outlives it; each send
/// succeeds unless failSends is set.
class RecordingSocket : public DatagramSocket {
public:
    explicit RecordingSocket(QStringList* journal) : m_journal(journal) {}
    bool open = false;
    QString host;
    int port = 0;
    bool failSends = false;
    std::vector<QByteArray> sent;
    bool isOpen() const override { return open; }
    void close() override
    {
        open = false;
        note(QStringLiteral("close"));
    }
    void setRemoteHost(const QString& h) override
    {
        host = h;
        note(QStringLiteral("host:") + h);
    }
    QString remoteHost() const override { return host; }
    void setRemotePort(int p) override
    {
        port = p;
        note(QStringLiteral("port:%1").arg(p));
    }
    int remotePort() const override { return port; }
    bool send(const QByteArray& datagram) override
    {
        note(QStringLiteral("send:") + QString::fromLatin1(datagram.mid(4)));
        if (failSends)
            return false;
        open = true;
        sent.push_back(datagram);
        return true;
    }

private:
    void note(const QString& call)
    {
        if (m_journal)
            m_journal->append(call);
    }
    QStringList* m_journal;
};

/// Hands out recording sockets. journal holds the calls of all of them: "close",
/// "host:<h>", "port:<p>", "send:<text behind the four 0xFF bytes>".
class RecordingSockets : public DatagramSockets {
public:
    QStringList journal;
    RecordingSocket* last = nullptr;
    bool failSends = false;
    std::unique_ptr<DatagramSocket> create() override
    {
        auto socket = std::make_unique<RecordingSocket>(&journal);
        socket->failSends = failSends;
        last = socket.get();
        return socket;
    }
};

} // namespace steward::testing
