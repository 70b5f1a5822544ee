#include "settings/PlainIniFormat.h"

#include <QByteArray>
#include <QHash>
#include <QIODevice>
#include <QStringDecoder>
#include <QStringList>

namespace steward {

namespace {

const QString kGeneral = QStringLiteral("General");

bool isBlank(QChar c) { return c == QLatin1Char(' ') || c == QLatin1Char('\t'); }

QString trimWhite(const QString& text)
{
    qsizetype first = 0;
    qsizetype last = text.size();
    while (first < last && isBlank(text.at(first)))
        ++first;
    while (last > first && isBlank(text.at(last - 1)))
        --last;
    return text.mid(first, last - first);
}

int hexValue(QChar c)
{
    const char16_t u = c.unicode();
    if (u >= u'0' && u <= u'9')
        return u - u'0';
    if (u >= u'a' && u <= u'f')
        return u - u'a' + 10;
    if (u >= u'A' && u <= u'F')
        return u - u'A' + 10;
    return -1;
}

QString decodeFileText(const QByteArray& bytes)
{
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = utf8(bytes);
    if (utf8.hasError())
        text = QString::fromLatin1(bytes);
    if (text.startsWith(QChar(0xFEFF)))
        text.remove(0, 1);
    return text;
}

QString normalisedKey(const QString& raw) { return encodeStoreKey(decodeStoreKey(raw)); }

} // namespace

QString encodeStoreKey(const QString& key) { return QString::fromLatin1(key.toUtf8().toPercentEncoding()); }

QString decodeStoreKey(const QString& encoded)
{
    return QString::fromUtf8(QByteArray::fromPercentEncoding(encoded.toUtf8()));
}

QString quotePlainIniValue(const QString& value)
{
    QString out;
    out.reserve(value.size() + 2);
    out += QLatin1Char('"');
    for (QChar c : value) {
        switch (c.unicode()) {
        case u'\\':
            out += QStringLiteral("\\\\");
            break;
        case u'"':
            out += QStringLiteral("\\\"");
            break;
        case u'\n':
            out += QStringLiteral("\\n");
            break;
        case u'\r':
            out += QStringLiteral("\\r");
            break;
        case u'\t':
            out += QStringLiteral("\\t");
            break;
        default:
            if (c.unicode() < 0x20 || c.unicode() == 0x7f)
                out += QStringLiteral("\\x%1").arg(c.unicode(), 2, 16, QLatin1Char('0'));
            else
                out += c;
        }
    }
    out += QLatin1Char('"');
    return out;
}

QString unquotePlainIniValue(const QString& raw)
{
    const qsizetype n = raw.size();
    if (n < 2 || raw.front() != QLatin1Char('"') || raw.back() != QLatin1Char('"'))
        return raw;
    // One quoted string from the first character to the last, or the text as it stands.
    QString out;
    out.reserve(n);
    for (qsizetype i = 1; i < n - 1; ++i) {
        const QChar c = raw.at(i);
        if (c == QLatin1Char('"'))
            return raw;
        if (c != QLatin1Char('\\')) {
            out += c;
            continue;
        }
        if (i + 1 >= n - 1)
            return raw; // the backslash would escape the closing quote
        const QChar e = raw.at(++i);
        switch (e.unicode()) {
        case u'\\':
            out += QLatin1Char('\\');
            break;
        case u'"':
            out += QLatin1Char('"');
            break;
        case u'n':
            out += QLatin1Char('\n');
            break;
        case u'r':
            out += QLatin1Char('\r');
            break;
        case u't':
            out += QLatin1Char('\t');
            break;
        case u'x': {
            const int hi = i + 2 < n - 1 ? hexValue(raw.at(i + 1)) : -1;
            const int lo = hi >= 0 ? hexValue(raw.at(i + 2)) : -1;
            if (lo < 0) {
                out += QLatin1Char('\\');
                out += e;
            } else {
                out += QChar(char16_t(hi * 16 + lo));
                i += 2;
            }
            break;
        }
        default:
            out += QLatin1Char('\\');
            out += e;
        }
    }
    return out;
}

bool readPlainIni(QIODevice& device, QSettings::SettingsMap& map)
{
    QString text = decodeFileText(device.readAll());
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")).replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QString section;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QString trimmed = trimWhite(line);
        if (trimmed.isEmpty() || trimmed.startsWith(QLatin1Char(';')) || trimmed.startsWith(QLatin1Char('#')))
            continue;
        if (trimmed.startsWith(QLatin1Char('[')) && trimmed.endsWith(QLatin1Char(']'))) {
            section = normalisedKey(trimWhite(trimmed.mid(1, trimmed.size() - 2)));
            if (section == kGeneral)
                section.clear();
            continue;
        }
        const auto eq = trimmed.indexOf(QLatin1Char('='));
        if (eq <= 0)
            continue;
        const QString key = normalisedKey(trimWhite(trimmed.left(eq)));
        if (key.isEmpty())
            continue;
        const QString value = unquotePlainIniValue(trimWhite(trimmed.mid(eq + 1)));
        map.insert(section.isEmpty() ? key : section + QLatin1Char('/') + key, value);
    }
    return true;
}

bool writePlainIni(QIODevice& device, const QSettings::SettingsMap& map)
{
    // Sections in the order of the sorted keys, top-level keys under [General].
    QStringList sections;
    QHash<QString, QStringList> lines;
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        const QString& full = it.key();
        const auto slash = full.lastIndexOf(QLatin1Char('/'));
        const QString section = slash < 0 ? kGeneral : full.left(slash);
        const QString key = slash < 0 ? full : full.mid(slash + 1);
        if (!lines.contains(section))
            sections << section;
        lines[section] << key + QLatin1Char('=') + quotePlainIniValue(it.value().toString());
    }
    QByteArray out;
    for (const QString& section : sections) {
        if (!out.isEmpty())
            out += '\n';
        out += '[' + section.toUtf8() + "]\n";
        for (const QString& l : lines.value(section))
            out += l.toUtf8() + '\n';
    }
    return device.write(out) == out.size();
}

} // namespace steward
