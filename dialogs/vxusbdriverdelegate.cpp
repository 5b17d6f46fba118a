#include "vxusbdriverdelegate.h"

#include "custom.h"

#include <QApplication>
#include <QPainter>

void VxUsbDriverDelegate::paint(QPainter *pPainter, const QStyleOptionViewItem &option, const QModelIndex &index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    QStyle *pStyle = opt.widget ? opt.widget->style() : QApplication::style();
    QRect rectText = opt.rect;
    rectText.setLeft(rectText.left() + 5);
    rectText.setTop(rectText.top() + 2);
    const QBrush brush = Custom::getDataBaseColor(
        QStringLiteral("VetrixToolColor_VxUsbBasicInfoDlg_VxUsbDriverDelegate_Item_Font"), opt.rect);
    if (brush.style() != Qt::NoBrush)
        opt.palette.setBrush(QPalette::All, QPalette::WindowText, brush.color());
    pPainter->save();
    pPainter->setFont(opt.font);
    pStyle->drawItemText(pPainter, rectText,
                         Qt::AlignLeft | Qt::AlignTop | Qt::TextExpandTabs | Qt::TextForceLeftToRight, opt.palette,
                         true, opt.text, QPalette::WindowText);
    pPainter->restore();
}
