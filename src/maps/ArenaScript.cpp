#include "maps/ArenaScript.h"

#include "maps/LineTokeniser.h"

namespace steward {

void readArenaScript(const QStringList& lines, QString& longName, QString& type)
{
    LineTokeniser fields{QStringLiteral("\"")};
    for (const QString& line : lines) {
        // Only blanks are trimmed.
        qsizetype first = 0, last = line.size();
        while (first < last && line.at(first) == QLatin1Char(' '))
            ++first;
        while (last > first && line.at(last - 1) == QLatin1Char(' '))
            --last;
        const QString text = line.mid(first, last - first);
        if (text == QLatin1String("{"))
            continue;
        if (text == QLatin1String("}"))
            break;
        fields.setText(text);
        const QString key = fields.field(1);
        if (key.contains(QLatin1String("longname")))
            longName = fields.field(2);
        else if (key.contains(QLatin1String("type")))
            type = fields.field(2);
    }
}

} // namespace steward
