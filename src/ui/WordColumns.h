#pragma once
// Columns of a table that hold one of a few fixed words (a skill, a team) are kept wide
// enough for the longest of them in the table's font, also when the font changes; the
// other columns share the rest.
#include <QObject>
#include <QStringList>
#include <map>

class QTableWidget;

namespace steward {

class WordColumns : public QObject {
    Q_OBJECT
public:
    /// Watches table; it owns this object.
    explicit WordColumns(QTableWidget* table);

    /// The column holds one of words.
    void add(int column, const QStringList& words);

    /// The width that shows each of words whole in the table's font, with the cell's margins.
    static int widthFor(const QTableWidget& table, const QStringList& words);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fit();

    QTableWidget* m_table;
    std::map<int, QStringList> m_columns;
};

} // namespace steward
