#include "vxusbbasicdelegate.h"

#include "custom.h"

#include <QApplication>
#include <QPainter>

QRect VxUsbBasicDelegate::textRect(const QRect &rectCell, int nColumn)
{
    QRect rectText = rectCell;
    rectText.setLeft(rectText.left() + (nColumn == 0 ? kLabelIndent : kValueIndent));
    rectText.setTop(rectText.top() + kTopIndent);
    return rectText;
}

QFont VxUsbBasicDelegate::textFont(const QFont &fontCell, int nColumn)
{
    QFont font = fontCell;
    if (nColumn == 0)
        font.setWeight(kLabelWeight);
    return font;
}

void VxUsbBasicDelegate::paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    QStyle *pStyle = opt.widget ? opt.widget->style() : QApplication::style();
    const QBrush brush = Custom::getDataBaseColor(
        QStringLiteral("VetrixToolColor_VxUsbBasicInfoDlg_VxUsbBasicDelegate_Item_Font"), opt.rect);
    if (brush.style() != Qt::NoBrush)
        opt.palette.setBrush(QPalette::All, QPalette::WindowText, brush.color());
    pPainter->save();
    pPainter->setFont(textFont(opt.font, index.column()));
    pStyle->drawItemText(pPainter, textRect(opt.rect, index.column()),
        Qt::AlignLeft | Qt::AlignTop | Qt::TextExpandTabs | Qt::TextForceLeftToRight, opt.palette, true, opt.text,
        QPalette::WindowText);
    pPainter->restore();
}
