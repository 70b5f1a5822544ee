#include "support/Registry.h"

#include "support/AppContext.h"
#include "support/ErrorReporter.h"
#include "support/Errors.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace steward {

WineEnvironment WineEnvironment::fromProcess() { return {qEnvironmentVariable("WINEPREFIX"), QDir::homePath()}; }

QStringList WineEnvironment::prefixes() const
{
    QStringList list;
    if (!winePrefix.isEmpty())
        list << winePrefix;
    if (!home.isEmpty()) {
        const QString own = QDir(home).filePath(QStringLiteral(".wine"));
        if (!list.contains(own))
            list << own;
    }
    return list;
}

namespace {

// The character of a backslash escape whose letter e stands just before from; the
// digits of a hex or octal escape are read on and from moves behind them.
QChar escaped(QChar e, const QString& line, qsizetype& from)
{
    switch (e.unicode()) {
    case 'n':
        return QLatin1Char('\n');
    case 'r':
        return QLatin1Char('\r');
    case 't':
        return QLatin1Char('\t');
    case 'a':
        return QChar(7);
    case 'b':
        return QChar(8);
    case 'e':
        return QChar(27);
    case 'f':
        return QChar(12);
    case 'v':
        return QChar(11);
    case 'x': {
        int digits = 0;
        uint code = 0;
        bool ok = true;
        while (digits < 4 && from < line.size()) {
            const uint d = QString(line.at(from)).toUInt(&ok, 16);
            if (!ok)
                break;
            code = code * 16 + d;
            ++from;
            ++digits;
        }
        return QChar(static_cast<char16_t>(code));
    }
    default:
        if (e >= QLatin1Char('0') && e <= QLatin1Char('7')) {
            uint code = static_cast<uint>(e.unicode() - '0');
            for (int i = 0;
                 i < 2 && from < line.size() && line.at(from) >= QLatin1Char('0') && line.at(from) <= QLatin1Char('7');
                 ++i)
                code = code * 8 + static_cast<uint>(line.at(from++).unicode() - '0');
            return QChar(static_cast<char16_t>(code));
        }
        return e; // \\ and \" and anything else stand for themselves
    }
}

// Reads the text of a quoted hive string starting at from (just behind the opening
// quote) and moves from behind the closing quote. Wine writes backslash escapes.
QString unquote(const QString& line, qsizetype& from)
{
    QString out;
    while (from < line.size()) {
        const QChar c = line.at(from++);
        if (c == QLatin1Char('"'))
            return out;
        if (c != QLatin1Char('\\') || from >= line.size()) {
            out += c;
            continue;
        }
        const QChar e = line.at(from++);
        out += escaped(e, line, from);
    }
    return out;
}

// The key name of a "[...]" line, unescaped, or a null text for other lines.
QString keyOfLine(const QString& line)
{
    if (!line.startsWith(QLatin1Char('[')))
        return {};
    QString name;
    qsizetype i = 1;
    while (i < line.size() && line.at(i) != QLatin1Char(']')) {
        if (line.at(i) == QLatin1Char('\\') && i + 1 < line.size()) {
            name += line.at(i + 1);
            i += 2;
        } else {
            name += line.at(i++);
        }
    }
    return name.isNull() ? QStringLiteral("") : name;
}

// One "name"=data line of a key.
void parseValueLine(const QString& line, QHash<QString, RegistryValue>& values)
{
    qsizetype i = 0;
    QString name;
    if (line.startsWith(QLatin1Char('@'))) {
        i = 1;
    } else if (line.startsWith(QLatin1Char('"'))) {
        i = 1;
        name = unquote(line, i);
    } else {
        return;
    }
    if (i >= line.size() || line.at(i) != QLatin1Char('='))
        return;
    ++i;
    const QString data = line.mid(i);
    RegistryValue v;
    if (data.startsWith(QLatin1Char('"'))) {
        v.type = reg::TypeSz;
        qsizetype j = 1;
        v.text = unquote(data, j);
    } else if (data.startsWith(QLatin1String("dword:"), Qt::CaseInsensitive)) {
        v.type = reg::TypeDword;
        v.dword = data.mid(6).trimmed().toUInt(nullptr, 16);
    } else if (data.startsWith(QLatin1String("str("), Qt::CaseInsensitive)) {
        v.type = data.mid(4, data.indexOf(QLatin1Char(')')) - 4).toInt(nullptr, 16);
        const qsizetype quote = data.indexOf(QLatin1Char('"'));
        qsizetype j = quote + 1;
        if (quote >= 0)
            v.text = unquote(data, j);
    } else if (data.startsWith(QLatin1String("hex("), Qt::CaseInsensitive)) {
        v.type = data.mid(4, data.indexOf(QLatin1Char(')')) - 4).toInt(nullptr, 16);
    } else if (data.startsWith(QLatin1String("hex:"), Qt::CaseInsensitive)) {
        v.type = 3;
    } else {
        return;
    }
    values.insert(name.toLower(), v);
}

} // namespace

RegistryKey RegistryKey::openInHive(const QString& hiveFile, const QString& subkey)
{
    RegistryKey key;
    QFile file(hiveFile);
    if (!file.open(QIODevice::ReadOnly))
        return key;
    const QString wanted = subkey;
    bool inKey = false;
    QString pending;
    while (!file.atEnd()) {
        QString line = QString::fromUtf8(file.readLine());
        while (line.endsWith(QLatin1Char('\n')) || line.endsWith(QLatin1Char('\r')))
            line.chop(1);
        // Long values go on over several lines, each but the last ending in "\".
        if (!pending.isEmpty()) {
            pending += line.trimmed();
            if (pending.endsWith(QLatin1Char('\\'))) {
                pending.chop(1);
                continue;
            }
            line = pending;
            pending.clear();
        } else if (inKey && line.endsWith(QLatin1Char('\\')) && !line.startsWith(QLatin1Char('['))) {
            pending = line.left(line.size() - 1);
            continue;
        }
        const QString keyName = keyOfLine(line);
        if (!keyName.isNull()) {
            if (inKey)
                break;
            inKey = keyName.compare(wanted, Qt::CaseInsensitive) == 0;
            key.m_open = inKey;
            continue;
        }
        if (inKey)
            parseValueLine(line, key.m_values);
    }
    return key;
}

RegistryKey RegistryKey::open(RegistryRoot root, const QString& subkey, const WineEnvironment& env)
{
    QStringList candidates{subkey};
    // A 32-bit installer on a 64-bit prefix writes below Wow6432Node.
    const QString software = QStringLiteral("SOFTWARE\\");
    if (root == RegistryRoot::LocalMachine && subkey.startsWith(software, Qt::CaseInsensitive))
        candidates << software + QStringLiteral("Wow6432Node\\") + subkey.mid(software.size());
    const QString hive = root == RegistryRoot::LocalMachine ? QStringLiteral("system.reg") : QStringLiteral("user.reg");
    for (const QString& prefix : env.prefixes()) {
        const QString file = QDir(prefix).filePath(hive);
        if (!QFileInfo::exists(file))
            continue;
        for (const QString& candidate : candidates) {
            RegistryKey key = openInHive(file, candidate);
            if (key.isOpen()) {
                key.m_prefix = prefix;
                return key;
            }
        }
    }
    return {};
}

const RegistryValue* RegistryKey::value(const QString& name) const
{
    auto it = m_values.constFind(name.toLower());
    return it == m_values.constEnd() ? nullptr : &it.value();
}

int QueryValueEx(const RegistryKey& key, const QString& valueName, QString& value)
{
    // Asking for the type and size first: a closed key or a missing value fails here,
    // and the trap empties the value.
    if (!key.isOpen()) {
        value.clear();
        return reg::InvalidHandle;
    }
    const RegistryValue* v = key.value(valueName);
    if (!v) {
        value.clear();
        return reg::FileNotFound;
    }
    switch (v->type) {
    case reg::TypeSz:
        value = v->text + QChar(0);
        return reg::Success;
    case reg::TypeDword:
        value = QString::number(v->dword);
        return reg::Success;
    default:
        return reg::UnknownType;
    }
}

QString mapWindowsPath(const QString& windowsPath, const QString& prefix)
{
    if (windowsPath.size() < 2 || windowsPath.at(1) != QLatin1Char(':') || !windowsPath.at(0).isLetter())
        return {};
    const QString drive = windowsPath.left(2).toLower();
    QString root;
    const QFileInfo device(QDir(prefix).filePath(QStringLiteral("dosdevices/") + drive));
    if (device.exists())
        root = device.canonicalFilePath();
    else if (drive == QLatin1String("c:") && QFileInfo(QDir(prefix).filePath(QStringLiteral("drive_c"))).isDir())
        root = QFileInfo(QDir(prefix).filePath(QStringLiteral("drive_c"))).canonicalFilePath();
    if (root.isEmpty())
        return {};

    // Windows paths don't care about case: each part takes the existing folder's name.
    QString rest = windowsPath.mid(2);
    rest.replace(QLatin1Char('\\'), QLatin1Char('/'));
    const bool trailing = rest.endsWith(QLatin1Char('/')) && rest.size() > 1;
    QString path = root;
    bool exists = true;
    for (const QString& part : rest.split(QLatin1Char('/'), Qt::SkipEmptyParts)) {
        QString name = part;
        if (exists) {
            name = findChildFolder(path, part, part);
            exists = QFileInfo(path + QLatin1Char('/') + name).exists();
        }
        path += QLatin1Char('/') + name;
    }
    if (trailing)
        path += QLatin1Char('/');
    return path;
}

QString GetInstallPath(AppContext& app, const WineEnvironment& env)
{
    try {
        for (const QString& prefix : env.prefixes()) {
            WineEnvironment one;
            one.winePrefix = prefix;
            const RegistryKey key = RegistryKey::open(RegistryRoot::LocalMachine, kInstallKey, one);
            QString value;
            if (QueryValueEx(key, kInstallValue, value) != reg::Success || value.isEmpty())
                continue;
            const bool terminated = value.endsWith(QChar(0));
            const QString mapped = mapWindowsPath(terminated ? value.chopped(1) : value, prefix);
            if (!mapped.isEmpty())
                return terminated ? mapped + QChar(0) : mapped;
        }
    } catch (const RuntimeError& e) {
        reportInformation(app, e);
    }
    return {};
}

} // namespace steward
