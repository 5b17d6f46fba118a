#pragma once

#include <QStyledItemDelegate>

// Draws the result tree's rows: group headings, item rows with their grade
// icon, and the item's text lines in a quieter style below them.
class COnekeyResultDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    explicit COnekeyResultDelegate(QObject *pParent = nullptr);

    void paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

    static constexpr int kGroupRowHeight = 40;
    static constexpr int kItemRowHeight = 44;
    static constexpr int kLineRowHeight = 22;
};
