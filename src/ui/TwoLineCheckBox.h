#pragma once
// A bound check box that shows its caption on two lines, broken at the blank nearest
// the middle, where a page has no room for it on one. Its text stays the caption.
#include "ui/FieldWidgets.h"

namespace steward {

class TwoLineCheckBox : public BoundCheckBox {
    Q_OBJECT
public:
    using BoundCheckBox::BoundCheckBox;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// The caption as it is shown: two lines.
    static QString twoLines(const QString& caption);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& pos) const override { return rect().contains(pos); }
};

} // namespace steward
