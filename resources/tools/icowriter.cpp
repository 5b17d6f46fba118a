#include "icowriter.h"

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QImage>
#include <QSaveFile>

namespace {

QByteArray dibEntry(const QImage &source)
{
    const QImage image = source.convertToFormat(QImage::Format_ARGB32);
    const int w = image.width(), h = image.height();
    QByteArray data;
    QDataStream out(&data, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    const int nMaskStride = ((w + 31) / 32) * 4;
    // BITMAPINFOHEADER; the height counts the colour rows and the mask rows.
    out << quint32(40) << qint32(w) << qint32(2 * h) << quint16(1) << quint16(32) << quint32(0)
        << quint32(w * h * 4 + nMaskStride * h) << qint32(0) << qint32(0) << quint32(0) << quint32(0);
    for (int y = h - 1; y >= 0; --y) {
        const QRgb *pLine = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < w; ++x)
            out << quint8(qBlue(pLine[x])) << quint8(qGreen(pLine[x])) << quint8(qRed(pLine[x]))
                << quint8(qAlpha(pLine[x]));
    }
    // AND mask: all zero, the alpha channel decides.
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < nMaskStride; ++x)
            out << quint8(0);
    return data;
}

QByteArray pngEntry(const QImage &image)
{
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return data;
}

} // namespace

namespace IcoWriter {

bool write(const QString &strPath, const QList<QImage> &listImages)
{
    QList<QByteArray> listData;
    for (const QImage &image : listImages) {
        if (image.isNull() || image.width() > 256 || image.height() > 256)
            return false;
        listData.append(image.width() >= 256 ? pngEntry(image) : dibEntry(image));
    }
    QByteArray file;
    QDataStream out(&file, QIODevice::WriteOnly);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint16(0) << quint16(1) << quint16(listImages.size());
    quint32 uOffset = 6 + 16 * quint32(listImages.size());
    for (int i = 0; i < listImages.size(); ++i) {
        const QImage &image = listImages.at(i);
        out << quint8(image.width() >= 256 ? 0 : image.width()) << quint8(image.height() >= 256 ? 0 : image.height())
            << quint8(0) << quint8(0) << quint16(1) << quint16(32) << quint32(listData.at(i).size()) << uOffset;
        uOffset += quint32(listData.at(i).size());
    }
    for (const QByteArray &data : qAsConst(listData))
        file.append(data);
    QSaveFile save(strPath);
    return save.open(QIODevice::WriteOnly) && save.write(file) == file.size() && save.commit();
}

} // namespace IcoWriter
