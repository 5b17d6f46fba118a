#include "gifwriter.h"

#include <QByteArray>
#include <QHash>
#include <QImage>
#include <QMap>
#include <QSaveFile>
#include <QVector>

#include <algorithm>
#include <unordered_map>

namespace {

const int kTransparent = 255;

void put16(QByteArray &out, int nValue)
{
    out.append(char(nValue & 0xFF));
    out.append(char((nValue >> 8) & 0xFF));
}

// Packs variable-width codes least significant bit first, as GIF wants.
class BitWriter
{
public:
    void write(int nCode, int nBits)
    {
        m_uBuffer |= quint32(nCode) << m_nCount;
        m_nCount += nBits;
        while (m_nCount >= 8) {
            m_bytes.append(char(m_uBuffer & 0xFF));
            m_uBuffer >>= 8;
            m_nCount -= 8;
        }
    }
    QByteArray finish()
    {
        if (m_nCount > 0)
            m_bytes.append(char(m_uBuffer & 0xFF));
        m_uBuffer = 0;
        m_nCount = 0;
        return m_bytes;
    }

private:
    QByteArray m_bytes;
    quint32 m_uBuffer = 0;
    int m_nCount = 0;
};

// LZW with 8-bit indices: codes grow from 9 to 12 bits, the table is reset
// with a clear code when it is full.
QByteArray lzw(const QVector<quint8> &vecIndex)
{
    const int nClear = 256, nEnd = 257;
    BitWriter bits;
    int nCodeSize = 9;
    int nMaxCode = nEnd;
    std::unordered_map<quint32, int> table;
    bits.write(nClear, nCodeSize);
    int nCurrent = vecIndex.isEmpty() ? 0 : vecIndex.first();
    for (int i = 1; i < vecIndex.size(); ++i) {
        const quint8 uNext = vecIndex.at(i);
        const quint32 uKey = (quint32(nCurrent) << 8) | uNext;
        const auto it = table.find(uKey);
        if (it != table.end()) {
            nCurrent = it->second;
            continue;
        }
        bits.write(nCurrent, nCodeSize);
        table.emplace(uKey, ++nMaxCode);
        if (nMaxCode >= (1 << nCodeSize))
            ++nCodeSize;
        if (nMaxCode == 4095) {
            bits.write(nClear, nCodeSize);
            table.clear();
            nCodeSize = 9;
            nMaxCode = nEnd;
        }
        nCurrent = uNext;
    }
    bits.write(nCurrent, nCodeSize);
    bits.write(nEnd, nCodeSize);
    return bits.finish();
}

QRgb blend(QRgb pixel, const QColor &matte)
{
    const int a = qAlpha(pixel);
    auto mix = [a](int c, int m) { return (c * a + m * (255 - a) + 127) / 255; };
    // The image is not premultiplied: colour channels are straight.
    return qRgb(mix(qRed(pixel), matte.red()), mix(qGreen(pixel), matte.green()), mix(qBlue(pixel), matte.blue()));
}

QVector<QRgb> buildPalette(const QList<QImage> &listFrames, const QColor &matte)
{
    QHash<QRgb, int> mapExact;
    for (const QImage &frame : listFrames) {
        for (int y = 0; y < frame.height(); ++y) {
            const QRgb *pLine = reinterpret_cast<const QRgb *>(frame.constScanLine(y));
            for (int x = 0; x < frame.width(); ++x) {
                if (qAlpha(pLine[x]) >= 128)
                    ++mapExact[blend(pLine[x], matte)];
            }
        }
    }
    QVector<QRgb> vecPalette;
    if (mapExact.size() <= kTransparent) {
        for (auto it = mapExact.constBegin(); it != mapExact.constEnd(); ++it)
            vecPalette.append(it.key());
    } else {
        // 15-bit buckets; each bucket's colour is the weighted mean of its members.
        struct Bucket { qint64 r = 0, g = 0, b = 0, n = 0; };
        QHash<int, Bucket> mapBucket;
        for (auto it = mapExact.constBegin(); it != mapExact.constEnd(); ++it) {
            const QRgb c = it.key();
            Bucket &bucket = mapBucket[((qRed(c) >> 3) << 10) | ((qGreen(c) >> 3) << 5) | (qBlue(c) >> 3)];
            bucket.r += qint64(qRed(c)) * it.value();
            bucket.g += qint64(qGreen(c)) * it.value();
            bucket.b += qint64(qBlue(c)) * it.value();
            bucket.n += it.value();
        }
        QVector<Bucket> vecBucket;
        for (const Bucket &bucket : qAsConst(mapBucket))
            vecBucket.append(bucket);
        std::sort(vecBucket.begin(), vecBucket.end(), [](const Bucket &a, const Bucket &b) { return a.n > b.n; });
        for (int i = 0; i < vecBucket.size() && i < kTransparent; ++i) {
            const Bucket &b = vecBucket.at(i);
            vecPalette.append(qRgb(int(b.r / b.n), int(b.g / b.n), int(b.b / b.n)));
        }
    }
    while (vecPalette.size() < 256)
        vecPalette.append(matte.rgb());
    return vecPalette;
}

int nearest(const QVector<QRgb> &vecPalette, QRgb color, QHash<QRgb, int> &cache)
{
    const auto it = cache.constFind(color);
    if (it != cache.constEnd())
        return it.value();
    int nBest = 0;
    int nBestDistance = INT_MAX;
    for (int i = 0; i < kTransparent; ++i) {
        const QRgb p = vecPalette.at(i);
        const int dr = qRed(p) - qRed(color), dg = qGreen(p) - qGreen(color), db = qBlue(p) - qBlue(color);
        const int nDistance = 3 * dr * dr + 4 * dg * dg + 2 * db * db;
        if (nDistance < nBestDistance) {
            nBestDistance = nDistance;
            nBest = i;
        }
    }
    cache.insert(color, nBest);
    return nBest;
}

} // namespace

namespace GifWriter {

bool write(const QString &strPath, const QList<QImage> &listSource, int nDelayCentiseconds, const QColor &matte)
{
    if (listSource.isEmpty())
        return false;
    const QSize size = listSource.first().size();
    if (size.isEmpty() || size.width() > 0xFFFF || size.height() > 0xFFFF)
        return false;
    QList<QImage> listFrames;
    for (const QImage &frame : listSource) {
        if (frame.size() != size)
            return false;
        listFrames.append(frame.convertToFormat(QImage::Format_ARGB32));
    }
    const QVector<QRgb> vecPalette = buildPalette(listFrames, matte);

    QByteArray out("GIF89a");
    put16(out, size.width());
    put16(out, size.height());
    out.append(char(0xF7)); // global colour table of 256 entries, 8-bit colour resolution
    out.append(char(kTransparent));
    out.append(char(0));
    for (QRgb c : vecPalette) {
        out.append(char(qRed(c)));
        out.append(char(qGreen(c)));
        out.append(char(qBlue(c)));
    }
    // Loop for ever (NETSCAPE2.0 application extension).
    out.append("\x21\xFF\x0BNETSCAPE2.0\x03\x01", 16);
    put16(out, 0);
    out.append(char(0));

    QHash<QRgb, int> cache;
    for (const QImage &frame : qAsConst(listFrames)) {
        // Graphic control: restore to background after the frame, transparency on.
        out.append("\x21\xF9\x04\x09", 4);
        put16(out, nDelayCentiseconds);
        out.append(char(kTransparent));
        out.append(char(0));
        out.append(char(0x2C));
        put16(out, 0);
        put16(out, 0);
        put16(out, size.width());
        put16(out, size.height());
        out.append(char(0));
        QVector<quint8> vecIndex;
        vecIndex.reserve(size.width() * size.height());
        for (int y = 0; y < size.height(); ++y) {
            const QRgb *pLine = reinterpret_cast<const QRgb *>(frame.constScanLine(y));
            for (int x = 0; x < size.width(); ++x) {
                vecIndex.append(qAlpha(pLine[x]) >= 128 ? quint8(nearest(vecPalette, blend(pLine[x], matte), cache))
                                                        : quint8(kTransparent));
            }
        }
        out.append(char(8));
        const QByteArray data = lzw(vecIndex);
        for (int nPos = 0; nPos < data.size(); nPos += 255) {
            const int nChunk = qMin(255, data.size() - nPos);
            out.append(char(nChunk));
            out.append(data.constData() + nPos, nChunk);
        }
        out.append(char(0));
    }
    out.append(char(0x3B));

    QSaveFile file(strPath);
    return file.open(QIODevice::WriteOnly) && file.write(out) == out.size() && file.commit();
}

} // namespace GifWriter
