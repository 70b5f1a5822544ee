#include "support/Strings.h"

#include "support/Errors.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <cmath>
#include <limits>

namespace steward {

QString& AddSlash(QString& path)
{
    if (!path.endsWith(QLatin1Char('/')))
        path += QLatin1Char('/');
    return path;
}

QString withSlash(QString path) { return AddSlash(path); }

QString GetNamePart(const QString& path)
{
    const auto slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? path : path.mid(slash + 1);
}

QString GetPathPart(const QString& path)
{
    const auto slash = path.lastIndexOf(QLatin1Char('/'));
    return slash < 0 ? QString() : path.left(slash + 1);
}

QString trimBlanks(const QString& text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && text.at(first) == QLatin1Char(' '))
        ++first;
    while (last > first && text.at(last - 1) == QLatin1Char(' '))
        --last;
    return text.mid(first, last - first);
}

QString IsClean(const QString& text, const QString& find, const QString& replacement)
{
    if (text.isEmpty())
        return {};
    if (find.isEmpty())
        return text;
    QString result = text;
    return result.replace(find, replacement, Qt::CaseSensitive);
}

double leadingNumber(const QString& text)
{
    // Blanks, tabs and line feeds are skipped wherever they stand.
    QString compact;
    compact.reserve(text.size());
    for (QChar c : text)
        if (c != QLatin1Char(' ') && c != QLatin1Char('\t') && c != QLatin1Char('\n') && c != QLatin1Char('\r'))
            compact += c;
    static const QRegularExpression number(QStringLiteral("^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eEdD][+-]?\\d+)?"));
    const auto match = number.match(compact);
    if (!match.hasMatch())
        return 0.0;
    QString found = match.captured(0);
    found.replace(QLatin1Char('d'), QLatin1Char('e')).replace(QLatin1Char('D'), QLatin1Char('e'));
    bool ok = false;
    const double value = found.toDouble(&ok);
    return ok ? value : 0.0;
}

namespace {
double roundHalfEven(double value)
{
    return std::nearbyint(value); // the default rounding mode rounds half to even
}
} // namespace

int toInt16(double value)
{
    const double r = roundHalfEven(value);
    if (!std::isfinite(r) || r < -32768.0 || r > 32767.0)
        raiseError(err::Overflow);
    return static_cast<int>(r);
}

qint32 toInt32(double value)
{
    const double r = roundHalfEven(value);
    if (!std::isfinite(r) || r < -2147483648.0 || r > 2147483647.0)
        raiseError(err::Overflow);
    return static_cast<qint32>(r);
}

bool isNumeric(const QString& text)
{
    static const QRegularExpression number(QStringLiteral("^\\s*[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?\\s*$"));
    return number.match(text).hasMatch();
}

qint32 textToInt32(const QString& text)
{
    if (!isNumeric(text))
        raiseError(err::TypeMismatch);
    return toInt32(text.trimmed().toDouble());
}

bool textToBool(const QString& text)
{
    const QString t = text.trimmed();
    if (t.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
        return true;
    if (t.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
        return false;
    if (isNumeric(t))
        return t.toDouble() != 0.0;
    raiseError(err::TypeMismatch);
}

namespace {
bool hasWildcard(const QString& name) { return name.contains(QLatin1Char('*')) || name.contains(QLatin1Char('?')); }
} // namespace

QString firstMatchingFile(const QString& pattern)
{
    if (pattern.isEmpty())
        return {};
    const QString folder = GetPathPart(pattern);
    const QString name = GetNamePart(pattern);
    if (!name.isEmpty() && !hasWildcard(name)) {
        const QFileInfo info(pattern);
        return info.isFile() && !name.startsWith(QLatin1Char('.')) ? name : QString();
    }
    QDir dir(folder.isEmpty() ? QStringLiteral(".") : folder);
    if (!dir.exists())
        return {};
    const QStringList filters = name.isEmpty() ? QStringList() : QStringList{name};
    const QStringList files = dir.entryList(filters, QDir::Files, QDir::Unsorted);
    return files.isEmpty() ? QString() : files.first();
}

bool FileExists(const QString& path)
{
    if (path.isEmpty() || path.endsWith(QLatin1Char('/')))
        return false;
    return !firstMatchingFile(path).isEmpty();
}

} // namespace steward
