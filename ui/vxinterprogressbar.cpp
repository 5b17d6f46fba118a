#include "vxinterprogressbar.h"

#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>

VxInterProgressBar::VxInterProgressBar(QWidget *pParent)
    : QProgressBar(pParent)
{
    setTextVisible(false);
}

int VxInterProgressBar::percent() const
{
    const int nSpan = maximum() - minimum();
    if (nSpan <= 0)
        return 0;
    return value() * 100 / nSpan;
}

void VxInterProgressBar::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    QFont font = painter.font();
    font.setPixelSize(14);
    painter.setFont(font);
    const QString strText = QString::number(percent()) + QLatin1Char('%');
    const int nTextWidth = painter.fontMetrics().horizontalAdvance(QStringLiteral("100%"));
    const int nGap = 8;

    const QRectF groove(0.5, 0.5, qMax(0, width() - nTextWidth - nGap) - 1.0, height() - 1.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(QStringLiteral("#46484C")));
    painter.drawRoundedRect(groove, 5, 5);

    const double dFraction = qBound(0, percent(), 100) / 100.0;
    if (dFraction > 0.0) {
        QRectF filled = groove;
        filled.setWidth(groove.width() * dFraction);
        QLinearGradient gradient(filled.topLeft(), filled.topRight());
        gradient.setColorAt(0, QColor(QStringLiteral("#429321")));
        gradient.setColorAt(1, QColor(QStringLiteral("#B4EC51")));
        painter.setBrush(gradient);
        painter.drawRoundedRect(filled, 5, 5);
    }

    painter.setPen(QColor(QStringLiteral("#A6A7AA")));
    const QRect textRect(width() - nTextWidth, 0, nTextWidth, height());
    painter.drawText(textRect, Qt::AlignVCenter | Qt::AlignRight, strText);
}
