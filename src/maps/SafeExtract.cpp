#include "maps/SafeExtract.h"

#include "support/AppContext.h"
#include "support/Errors.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <atomic>
#include <cstdio>

namespace steward {

namespace {

bool isInside(const QString& canonicalPath, const QString& canonicalRoot)
{
    return canonicalPath == canonicalRoot || canonicalPath.startsWith(canonicalRoot + QLatin1Char('/'));
}

} // namespace

QString makeFoldersBelow(const QString& root, const QString& entryFolder,
                         const std::function<void(const QString& step)>& leadsOut)
{
    QString current = root;
    for (const QString& part : entryFolder.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        const QString name = findChildFolder(current, part, part);
        const QString next = current + QLatin1Char('/') + name;
        const QFileInfo info(next);
        if (!info.exists() && !info.isSymLink() && !QDir(current).mkdir(name))
            raiseError(err::PathFileAccess, {}, next);
        const QFileInfo made(next);
        if (!made.isDir())
            raiseError(err::PathFileAccess, QStringLiteral("%1 is not a folder").arg(next),
                       QStringLiteral("ArchiveReader"));
        const QString canonical = made.canonicalFilePath();
        if (!isInside(canonical, root))
            leadsOut(next);
        current = canonical;
    }
    return current;
}

void writeReplacing(const QString& folder, const QString& target, bool readOnly, const EntryUnpacker& unpack)
{
    static std::atomic<quint32> serial{0};
    QFile temp(folder + QStringLiteral("/.extract-%1-%2").arg(QCoreApplication::applicationPid()).arg(serial++));
    if (!temp.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        raiseError(err::PathFileAccess, {}, target);
    struct Discard {
        QFile& file;
        bool keep = false;
        ~Discard()
        {
            if (!keep)
                file.remove();
        }
    } discard{temp};

    if (!unpack([&temp](const char* chunk, qint64 size) { return temp.write(chunk, size) == size; },
                [&temp] {
                    temp.seek(0);
                    temp.resize(0);
                }))
        raiseError(err::PathFileAccess, {}, target);
    if (!temp.flush())
        raiseError(err::PathFileAccess, {}, target);
    temp.close();

    QFile::Permissions permissions = QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther;
    if (!readOnly)
        permissions |= QFile::WriteOwner;
    temp.setPermissions(permissions);
    if (std::rename(QFile::encodeName(temp.fileName()).constData(), QFile::encodeName(target).constData()) != 0)
        raiseError(err::PathFileAccess, {}, target);
    discard.keep = true;
}

} // namespace steward
