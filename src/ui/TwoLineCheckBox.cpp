#include "ui/TwoLineCheckBox.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace steward {

QString TwoLineCheckBox::twoLines(const QString& caption)
{
    const qsizetype half = caption.size() / 2;
    const qsizetype before = caption.lastIndexOf(QLatin1Char(' '), half);
    const qsizetype after = caption.indexOf(QLatin1Char(' '), half);
    qsizetype cut = before;
    if (cut < 0 || (after >= 0 && after - half < half - before))
        cut = after;
    if (cut < 0)
        return caption;
    return caption.left(cut) + QLatin1Char('\n') + caption.mid(cut + 1);
}

QSize TwoLineCheckBox::sizeHint() const
{
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = twoLines(text());
    const QSize textSize = fontMetrics().size(Qt::TextShowMnemonic, option.text);
    return style()->sizeFromContents(QStyle::CT_CheckBox, &option, textSize, this);
}

void TwoLineCheckBox::paintEvent(QPaintEvent*)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.text = twoLines(text());
    painter.drawControl(QStyle::CE_CheckBox, option);
}

} // namespace steward
