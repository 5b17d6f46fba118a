#include "conekeyresultdelegate.h"

#include "vxonekeyresulttree.h"

#include <QPainter>

COnekeyResultDelegate::COnekeyResultDelegate(QObject *pParent)
    : QStyledItemDelegate(pParent)
{
}

namespace {
enum RowKind { GroupRow, ItemRow, LineRow };

RowKind kindOf(const QModelIndex &index)
{
    const QModelIndex first = index.siblingAtColumn(0);
    if (first.data(VxOneKeyResultTree::RoleLine).toBool())
        return LineRow;
    return first.data(VxOneKeyResultTree::RoleItemId).toInt() == -1 ? GroupRow : ItemRow;
}
} // namespace

QSize COnekeyResultDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    switch (kindOf(index)) {
    case GroupRow:
        size.setHeight(kGroupRowHeight);
        break;
    case ItemRow:
        size.setHeight(kItemRowHeight);
        break;
    case LineRow:
        size.setHeight(kLineRowHeight);
        break;
    }
    return size;
}

void COnekeyResultDelegate::paint(QPainter *pPainter, const QStyleOptionViewItem &option,
                                  const QModelIndex &index) const
{
    pPainter->save();
    pPainter->setRenderHint(QPainter::Antialiasing);
    pPainter->setRenderHint(QPainter::SmoothPixmapTransform);
    const RowKind eKind = kindOf(index);
    const QRect rect = option.rect;

    // Row backgrounds run across both columns; each column paints its part.
    const QColor background = eKind == GroupRow ? QColor(QStringLiteral("#F2F4F7")) : QColor(Qt::white);
    pPainter->fillRect(rect, background);
    if (eKind != LineRow) {
        pPainter->setPen(QColor(QStringLiteral("#E6E9EF")));
        pPainter->drawLine(rect.bottomLeft(), rect.bottomRight());
    }

    if (index.column() == 0) {
        QFont font = option.font;
        QRect textRect = rect.adjusted(8, 0, -8, 0);
        if (eKind == GroupRow) {
            font.setPixelSize(14);
            font.setWeight(QFont::Bold);
            pPainter->setPen(QColor(QStringLiteral("#23262B")));
        } else if (eKind == ItemRow) {
            const QIcon icon = qvariant_cast<QIcon>(index.data(Qt::DecorationRole));
            const QSize iconSize = option.decorationSize.isValid() ? option.decorationSize : QSize(30, 30);
            const QRect iconRect(rect.left() + 4, rect.top() + (rect.height() - iconSize.height()) / 2,
                                 iconSize.width(), iconSize.height());
            if (!icon.isNull())
                icon.paint(pPainter, iconRect);
            textRect.setLeft(iconRect.right() + 10);
            font.setPixelSize(14);
            pPainter->setPen(QColor(QStringLiteral("#414752")));
        } else {
            font.setPixelSize(12);
            textRect.setLeft(rect.left() + 44);
            pPainter->setPen(QColor(QStringLiteral("#6B7280")));
        }
        pPainter->setFont(font);
        const QString strText = index.data(Qt::DisplayRole).toString();
        const QString strShown =
            pPainter->fontMetrics().elidedText(strText, Qt::ElideRight, qMax(0, textRect.width()));
        pPainter->drawText(textRect, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, strShown);
    }
    pPainter->restore();
}
