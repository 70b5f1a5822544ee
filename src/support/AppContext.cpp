#include "support/AppContext.h"

#include "support/Strings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <dirent.h>

namespace steward {

AppContext::AppContext(Services s, QString folder, QString name)
    : services(s), programFolder(std::move(folder)), programName(std::move(name))
{}

QString findChildFolder(const QString& parent, const QString& name, const QString& fallback)
{
    const QDir dir(parent.isEmpty() ? QStringLiteral("/") : parent);
    if (QFileInfo(dir.filePath(name)).isDir())
        return name;
    // One pass over the names; only a name that matches is looked at more closely.
    QStringList matches;
    if (DIR* folder = ::opendir(QFile::encodeName(dir.path()).constData())) {
        while (const dirent* entry = ::readdir(folder)) {
            const QString child = QFile::decodeName(entry->d_name);
            if (child == QLatin1String(".") || child == QLatin1String("..") ||
                child.compare(name, Qt::CaseInsensitive) != 0)
                continue;
            if (QFileInfo(dir.filePath(child)).isDir())
                matches << child;
        }
        ::closedir(folder);
    }
    if (matches.size() <= 1)
        return matches.isEmpty() ? fallback : matches.first();
    // Several spellings: the first in the order of the sorted listing.
    const QStringList children = dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
    for (const QString& child : children)
        if (child.compare(name, Qt::CaseInsensitive) == 0)
            return child;
    return fallback;
}

QString AppContext::baseFolder() const
{
    QString folder = gameFolder;
    AddSlash(folder);
    return folder + findChildFolder(folder, QStringLiteral("base"), QStringLiteral("Base"));
}

QString AppContext::programFile(const QString& name) const
{
    QString folder = programFolder;
    AddSlash(folder);
    return folder + name;
}

QString AppContext::profileFile(const QString& name) const
{
    if (profileName.isEmpty())
        return programFile(name);
    return programFile(QStringLiteral("servers/") + profileName + QLatin1Char('/') + name);
}

} // namespace steward
