#pragma once
// Readable test failures: texts print as text instead of bytes.
#include <QString>
#include <QStringList>
#include <ostream>

inline void PrintTo(const QString& text, std::ostream* os) { *os << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QStringList& list, std::ostream* os)
{
    *os << "{";
    for (qsizetype i = 0; i < list.size(); ++i)
        *os << (i ? ", " : " ") << '"' << list.at(i).toStdString() << '"';
    *os << " }";
}
