#pragma once

#include <QColor>
#include <QList>
#include <QString>

class QImage;

// A small GIF89a encoder for short looping animations (Qt reads GIF but does
// not write it). Frames are composited over a matte colour; pixels at least
// half opaque become the blended colour, the others transparent, so edges stay
// smooth on backgrounds close to the matte. The palette (255 colours plus
// transparency) is shared by all frames: exact when the frames use few
// colours, otherwise the most frequent colours of a 15-bit histogram.
namespace GifWriter {
bool write(const QString &strPath, const QList<QImage> &listFrames, int nDelayCentiseconds, const QColor &matte);
}
