#include "testkit/TestApp.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace steward::testing {

TestApp::TestApp(const QString& baseName) : m_baseName(baseName)
{
    QDir().mkpath(baseFolder());
    QDir().mkpath(programFolder());
    // A program that has scanned once: an empty map catalogue.
    writeFile(programFolder() + QStringLiteral("/Jedi.aml"), QByteArray());
    store = std::make_unique<IniSettingsStore>(storeFile());
    Services s;
    s.prompts = &prompts;
    s.clock = &clock;
    s.names = &names;
    s.opener = &opener;
    s.launcher = &launcher;
    s.beeper = &beeper;
    s.instances = &instances;
    s.store = store.get();
    s.sockets = &sockets;
    s.blockingWait = &blockingWait;
    app = std::make_unique<AppContext>(s, programFolder());
    app->gameFolder = gameFolder();
    app->serverExecutable = QStringLiteral("jk2mvded");
}

QByteArray fileBytes(const QString& path)
{
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

QByteArray crlfText(const QStringList& lines)
{
    QByteArray out;
    for (const QString& l : lines)
        out += l.toLatin1() + "\r\n";
    return out;
}

QStringList crlfLines(const QString& path)
{
    const QString text = QString::fromLatin1(fileBytes(path));
    QStringList lines = text.split(QStringLiteral("\r\n"));
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

void writeFile(const QString& path, const QByteArray& bytes)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}

} // namespace steward::testing
