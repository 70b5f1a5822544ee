#pragma once
// Splits a text at a separator and gives its fields by one-based number; a field past
// the last is empty. "a|b" with "|" gives "a" and "b".
#include <QString>
#include <QStringList>

namespace steward {

class LineTokeniser {
public:
    explicit LineTokeniser(QString separator = QStringLiteral(" ")) : m_separator(std::move(separator)) {}

    void setText(const QString& text)
    {
        m_text = text;
        split();
    }
    QString field(int number) const
    {
        return number >= 1 && number <= m_fields.size() ? m_fields.at(number - 1) : QString();
    }

private:
    void split() { m_fields = m_separator.isEmpty() ? QStringList{m_text} : m_text.split(m_separator); }

    QString m_separator;
    QString m_text;
    QStringList m_fields;
};

} // namespace steward
