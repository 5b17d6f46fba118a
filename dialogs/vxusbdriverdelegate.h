#pragma once

#include <QStyledItemDelegate>

// Draws the cells of the USB controller driver table: the text only (no
// selection, no background), top-left aligned, 5 pixels in from the left
// and 2 down, in the house colour for driver items.
class VxUsbDriverDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};
