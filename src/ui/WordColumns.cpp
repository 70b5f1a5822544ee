#include "ui/WordColumns.h"

#include <QEvent>
#include <QHeaderView>
#include <QStyle>
#include <QTableWidget>

namespace steward {

WordColumns::WordColumns(QTableWidget* table) : QObject(table), m_table(table) { table->installEventFilter(this); }

void WordColumns::add(int column, const QStringList& words)
{
    m_columns[column] = words;
    fit();
}

int WordColumns::widthFor(const QTableWidget& table, const QStringList& words)
{
    const QFontMetrics metrics = table.fontMetrics();
    int widest = 0;
    for (const QString& word : words)
        widest = std::max(widest, metrics.horizontalAdvance(word));
    // A cell draws its text inside the focus frame's margin on either side.
    const int margin = table.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &table) + 1;
    return widest + 2 * margin + metrics.averageCharWidth();
}

void WordColumns::fit()
{
    QHeaderView* header = m_table->horizontalHeader();
    for (const auto& [column, words] : m_columns) {
        if (column >= m_table->columnCount())
            continue;
        header->setSectionResizeMode(column, QHeaderView::Fixed);
        header->resizeSection(column, widthFor(*m_table, words));
    }
}

bool WordColumns::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_table && (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange))
        fit();
    return QObject::eventFilter(watched, event);
}

} // namespace steward
