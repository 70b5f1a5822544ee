#include "bots/BotRosterFile.h"

#include "support/Errors.h"
#include "support/TextFile.h"

#include <QFileInfo>

namespace steward {

namespace {

const QChar kQuote = QLatin1Char('"');

QString fileField(const QString& cell, QChar separator)
{
    if (!cell.contains(separator) && !cell.startsWith(kQuote))
        return cell;
    QString quoted = cell;
    quoted.replace(kQuote, QStringLiteral("\"\""));
    return kQuote + quoted + kQuote;
}

} // namespace

QChar rosterSeparator(RosterForm form) { return form == RosterForm::Tab ? QLatin1Char('\t') : QLatin1Char(','); }

QString delimitedLine(const QStringList& cells, QChar separator)
{
    QStringList fields;
    for (const QString& cell : cells)
        fields << fileField(cell, separator);
    return fields.join(separator);
}

QString rosterFileLine(const QStringList& row, RosterForm form)
{
    QStringList cells;
    for (int c = 0; c < kRosterColumns; ++c)
        cells << row.value(c);
    return delimitedLine(cells, rosterSeparator(form));
}

QStringList rosterFileRow(const QString& line, RosterForm form)
{
    return delimitedRow(line, rosterSeparator(form), kRosterColumns);
}

QStringList delimitedRow(const QString& line, QChar separator, int columns)
{
    QStringList cells;
    qsizetype i = 0;
    const qsizetype n = line.size();
    while (true) {
        QString cell;
        if (i < n && line.at(i) == kQuote) {
            // A quoted field: up to the quote that isn't doubled, then on to the
            // separator; an unclosed quote runs to the end of the line.
            ++i;
            while (i < n) {
                if (line.at(i) == kQuote) {
                    if (i + 1 < n && line.at(i + 1) == kQuote) {
                        cell += kQuote;
                        i += 2;
                        continue;
                    }
                    ++i;
                    break;
                }
                cell += line.at(i++);
            }
        }
        while (i < n && line.at(i) != separator)
            cell += line.at(i++);
        cells << cell;
        if (i >= n)
            break;
        ++i; // the separator
    }
    while (cells.size() < columns)
        cells << QString();
    return cells.mid(0, columns);
}

void saveRosterFile(const QString& fileName, const QList<QStringList>& rows, RosterForm form)
{
    TextFileWriter file(fileName);
    for (const QStringList& row : rows)
        file.line(rosterFileLine(row, form));
    file.close();
}

QList<QStringList> loadRosterFile(const QString& fileName, RosterForm form)
{
    const QFileInfo info(fileName);
    if (!info.isFile())
        raiseError(info.exists() ? err::PathFileAccess : err::FileNotFound, {}, fileName);
    QList<QStringList> rows;
    for (const QString& line : readLines(fileName))
        rows << rosterFileRow(line, form);
    return rows;
}

} // namespace steward
