#include "vxtitle.h"

#include "custom.h"

#include <QPainter>

VxTitle::VxTitle(QWidget *pParent)
    : QWidget(pParent)
{
    setAttribute(Qt::WA_StyledBackground, false);
}

QColor VxTitle::textColor()
{
    return QColor(QStringLiteral("#414752"));
}

QColor VxTitle::strongTextColor()
{
    return QColor(QStringLiteral("#23262B"));
}

void VxTitle::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const qreal dRatio = devicePixelRatioF();
    const QPixmap left = Custom::loadPixmap(QStringLiteral(":/Vetrix/Vetrix/TitleBackgroundLeft.png"), dRatio);
    const QPixmap right = Custom::loadPixmap(QStringLiteral(":/Vetrix/Vetrix/TitleBackgroundRight.png"), dRatio);
    if (left.isNull() && right.isNull()) {
        painter.fillRect(rect(), Qt::white);
        return;
    }
    int nLeftWidth = 0;
    if (!left.isNull()) {
        const QSizeF size = left.size() / left.devicePixelRatio();
        nLeftWidth = qMin(width(), int(size.width() * height() / qMax(1.0, size.height())));
        painter.drawPixmap(QRect(0, 0, nLeftWidth, height()), left);
    }
    if (!right.isNull())
        painter.drawPixmap(QRect(nLeftWidth, 0, width() - nLeftWidth, height()), right);
}
