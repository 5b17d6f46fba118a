#pragma once

#include <QStyledItemDelegate>

// Draws the cells of the USB tree viewer's detail table: the text only (no
// selection, no background), top-left aligned 2 pixels below the cell's top,
// the label column in bold 20 pixels in from the left, the value column in
// the normal font 5 pixels in, both in the house colour for viewer items.
class VxUsbBasicDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static constexpr int kLabelIndent = 20;
    static constexpr int kValueIndent = 5;
    static constexpr int kTopIndent = 2;
    static constexpr int kLabelWeight = 75;

    // Where the text of a cell of the column goes.
    static QRect textRect(const QRect &rectCell, int nColumn);
    // The font of the column: the cell's font, bold for the label column.
    static QFont textFont(const QFont &fontCell, int nColumn);

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
