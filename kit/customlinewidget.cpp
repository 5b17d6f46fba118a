#include "customlinewidget.h"

#include "kitstyle.h"

#include <QPainter>

CustomLineWidget::CustomLineWidget(QWidget *pParent)
    : CustomLineWidget(HorizontalLine, pParent)
{
}

CustomLineWidget::CustomLineWidget(int nLineType, QWidget *pParent)
    : QWidget(pParent)
    , CustomObject(this)
{
    cSetLineType(nLineType);
}

void CustomLineWidget::cSetLineType(int nLineType)
{
    m_nLineType = nLineType == VerticalLine ? VerticalLine : HorizontalLine;
    if (m_nLineType == HorizontalLine)
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    else
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
    updateGeometry();
    update();
}

QSize CustomLineWidget::sizeHint() const
{
    return m_nLineType == HorizontalLine ? QSize(20, 1) : QSize(1, 20);
}

void CustomLineWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    const QColor color = cBackgroundColor(StateNormal).isValid() ? cBackgroundColor(StateNormal)
                                                                 : KitStyle::color("Panekit_Divider", "#EBEEF2");
    painter.fillRect(rect(), color);
}
