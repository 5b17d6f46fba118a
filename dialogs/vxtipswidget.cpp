#include "vxtipswidget.h"

#include "custom.h"

#include <QFontMetrics>
#include <QPainter>
#include <QStyle>

#include <new>

namespace {
const QString kLineBreak = QStringLiteral("\r\n");
const int kMinWidth = 64;
const int kIconColumn = 44;  // icon, its margins and the gap before the text
const int kOneLineBox = 30;  // text up to this height is centred in 34 pixels
const int kOneLineHeight = 34;
const int kLineGap = 5;
const int kTextGap = 11;     // between the icon's right edge and the text
} // namespace

VxTipsWidget::VxTipsWidget(QWidget *pParent)
    : QWidget(pParent)
{
    if (!init())
        throw std::bad_alloc();
}

VxTipsWidget::~VxTipsWidget() = default;

bool VxTipsWidget::init()
{
    QFont font(Custom::globalFontFamily());
    font.setPixelSize(12);
    setFont(font);
    strIconPath = QString::fromLatin1(kInformationIcon);
    QPalette pal = palette();
    const QBrush brush = Custom::getDataBaseColor(QStringLiteral("VetrixToolColor_VxTipsWidget_Font"), QRect(0, 0, 100, 30));
    if (brush.style() != Qt::NoBrush)
        pal.setBrush(QPalette::All, QPalette::WindowText, brush.color());
    setPalette(pal);
    return true;
}

void VxTipsWidget::setText(const QString &strNewText)
{
    strText = strNewText;
    update();
}

void VxTipsWidget::setIcon(const QString &strResourcePath)
{
    strIconPath = strResourcePath;
    update();
}

QString VxTipsWidget::wrapText(const QString &strIn, int nWidth, const QFontMetrics &metrics)
{
    const int nTotal = metrics.horizontalAdvance(strIn);
    if (nWidth >= nTotal)
        return strIn;
    const int nLength = strIn.size();
    const int nEstimate = int(qint64(nLength) * qMax(nWidth, 0) / nTotal);
    auto fits = [&](int nPos, int nCount) { return metrics.horizontalAdvance(strIn.mid(nPos, nCount)) <= nWidth; };

    QString strResult;
    int nPos = 0;
    while (nPos < nLength) {
        const int nLeft = nLength - nPos;
        int n = qMin(nEstimate, nLeft);
        if (!fits(nPos, n)) {
            // Step down to the first count that fits.
            while (n > 0) {
                --n;
                if (fits(nPos, n))
                    break;
            }
        } else {
            // Step up to the largest count that fits.
            while (n < nLeft) {
                if (!fits(nPos, n + 1))
                    break;
                ++n;
            }
        }
        // A character wider than the whole width still takes a line of its
        // own, so the walk always moves on.
        n = qMax(n, 1);
        strResult += strIn.mid(nPos, n) + kLineBreak;
        nPos += n;
    }
    if (strResult.endsWith(kLineBreak))
        strResult.chop(kLineBreak.size());
    return strResult;
}

int VxTipsWidget::textHeight(const QString &strWrapped, int nLineHeightIn)
{
    return nLineHeightIn + strWrapped.count(kLineBreak) * (nLineHeightIn + kLineGap);
}

void VxTipsWidget::adjustHeight()
{
    const int nWidth = qMax(width(), kMinWidth);
    const QFontMetrics metrics(font());
    nLineHeight = metrics.boundingRect(strText).height();
    strText = wrapText(strText, nWidth - kIconColumn, metrics);
    const int nTextHeight = textHeight(strText, nLineHeight);
    int nHeight = kOneLineHeight;
    if (nTextHeight > kOneLineBox) {
        nTopMargin = 0;
        nHeight = nTextHeight + 4;
    } else {
        nTopMargin = (kOneLineBox - nTextHeight) / 2;
    }
    setFixedSize(nWidth, nHeight);
    update();
}

QStringList VxTipsWidget::paintedLines() const
{
    return strText.split(kLineBreak, Qt::SkipEmptyParts);
}

QRect VxTipsWidget::iconRect() const
{
    const QPixmap pixmap = Custom::loadPixmap(strIconPath, devicePixelRatioF());
    const QSize size = pixmap.isNull() ? QSize(0, 0) : pixmap.size() / pixmap.devicePixelRatio();
    const QRect area(QPoint(2, 0), QPoint(rect().right() + 2, rect().bottom()));
    return QStyle::alignedRect(Qt::LeftToRight, Qt::AlignLeft | Qt::AlignVCenter, size, area);
}

void VxTipsWidget::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QPixmap pixmap = Custom::loadPixmap(strIconPath, devicePixelRatioF());
    const QRect rectIcon = iconRect();
    if (!pixmap.isNull())
        painter.drawPixmap(rectIcon, pixmap);

    const int nTextX = rectIcon.right() + kTextGap;
    const int nColumn = width() - nTextX;
    int nY = nTopMargin + 2;
    const int nFlags = Qt::AlignLeft | Qt::AlignTop | Qt::TextExpandTabs | Qt::TextForceLeftToRight;
    for (const QString &strLine : paintedLines()) {
        style()->drawItemText(&painter, QRect(nTextX, nY, nColumn, height()), nFlags, palette(), true, strLine,
                              QPalette::WindowText);
        nY += nLineHeight + kLineGap;
    }
}
