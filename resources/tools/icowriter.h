#pragma once

#include <QList>
#include <QString>

class QImage;

// Writes a Windows icon file holding several sizes: 32-bit DIB entries for
// sizes below 256 (readable by every Windows version and by Qt) and a PNG
// entry for 256 x 256, as Windows Vista and later expect.
namespace IcoWriter {
bool write(const QString &strPath, const QList<QImage> &listImages);
}
