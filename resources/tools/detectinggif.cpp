#include "detectinggif.h"

#include "gifwriter.h"

#include <QConicalGradient>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QtMath>

namespace {

const int kFrames = 36;
const int kDelay = 4; // centiseconds: one turn in 1.44 s
const QColor kAccent(0x1E, 0x7B, 0xE6);
const QColor kTrack(0xDC, 0xE9, 0xFB);
const QColor kPage(0xF2, 0xF3, 0xF5);

QImage frame(const QSize &size, int nFrame)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    // Drawing in a 102 x 102 design space.
    p.scale(size.width() / 102.0, size.height() / 102.0);
    const QPointF c(51, 51);

    p.setPen(Qt::NoPen);
    p.setBrush(QColor(0xE4, 0xEF, 0xFD));
    p.drawEllipse(c, 49, 49);
    p.setBrush(Qt::white);
    p.drawEllipse(c, 38, 38);

    // Turning arc on the outer band.
    const qreal dAngle = 360.0 * nFrame / kFrames;
    QConicalGradient sweep(c, -dAngle);
    QColor faded = kAccent;
    faded.setAlpha(0);
    sweep.setColorAt(0.0, kAccent);
    sweep.setColorAt(0.35, faded);
    sweep.setColorAt(1.0, faded);
    QPen arc(QBrush(sweep), 6.5);
    arc.setCapStyle(Qt::FlatCap);
    p.setPen(arc);
    p.setBrush(Qt::NoBrush);
    p.drawEllipse(c, 43.5, 43.5);
    // Head of the arc: the gradient's start, dAngle clockwise from three
    // o'clock on the screen (y grows downwards).
    const qreal dRad = qDegreesToRadians(dAngle);
    p.setPen(Qt::NoPen);
    p.setBrush(kAccent);
    p.drawEllipse(QPointF(c.x() + 43.5 * qCos(dRad), c.y() + 43.5 * qSin(dRad)), 3.6, 3.6);

    // Monitor with a scanning line that runs down and back.
    QPen line(kAccent, 3.2);
    line.setCapStyle(Qt::RoundCap);
    line.setJoinStyle(Qt::RoundJoin);
    p.setPen(line);
    p.setBrush(Qt::NoBrush);
    const QRectF screen(31, 34, 40, 27);
    p.drawRoundedRect(screen, 4, 4);
    p.drawLine(QPointF(44, 69), QPointF(58, 69));
    p.drawLine(QPointF(51, 61), QPointF(51, 69));
    const qreal dPhase = qreal(nFrame) / kFrames;
    const qreal dScan = dPhase < 0.5 ? dPhase * 2 : (1 - dPhase) * 2;
    const qreal y = screen.top() + 6 + dScan * (screen.height() - 12);
    QColor scan = kAccent;
    scan.setAlpha(110);
    p.setPen(QPen(scan, 2.4, Qt::SolidLine, Qt::RoundCap));
    p.drawLine(QPointF(screen.left() + 6, y), QPointF(screen.right() - 6, y));
    p.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

} // namespace

namespace DetectingGif {

bool write(const QString &strPath, const QSize &size)
{
    QList<QImage> listFrames;
    for (int i = 0; i < kFrames; ++i)
        listFrames.append(frame(size, i));
    return GifWriter::write(strPath, listFrames, kDelay, kPage);
}

} // namespace DetectingGif
