#include "support/AppContext.h"

#include "support/Strings.h"

#include <QDir>
#include <QFileInfo>

namespace steward {

AppContext::AppContext(Services s, QString folder, QString name)
    : services(s), programFolder(std::move(folder)), programName(std::move(name))
{
}

QString findChildFolder(const QString& parent, const QString& name, const QString& fallback)
{
    const QDir dir(parent.isEmpty() ? QStringLiteral("/") : parent);
    if (QFileInfo(dir.filePath(name)).isDir())
        return name;
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

} // namespace steward
