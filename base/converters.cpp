#include "luinterface.h"

#include <QByteArray>

#include <cstring>

namespace LuInterface {

QString char2QStringLocale(const char *pText, int nLength)
{
    if (!pText)
        return QString();
    return QString::fromLocal8Bit(pText, nLength < 0 ? int(std::strlen(pText)) : nLength);
}

int string2UcharLocale(const QString &strText, unsigned char *pBuffer, int nSize)
{
    if (!pBuffer || nSize < 1)
        return -1;
    QByteArray bytes = strText.toLocal8Bit();
    if (bytes.size() > nSize - 1) {
        // Too long: keep the longest prefix of whole characters that fits, so
        // a multi-byte character is never cut in half.
        int nLow = 0;
        int nHigh = strText.size();
        while (nLow < nHigh) {
            const int nMid = (nLow + nHigh + 1) / 2;
            if (strText.left(nMid).toLocal8Bit().size() <= nSize - 1)
                nLow = nMid;
            else
                nHigh = nMid - 1;
        }
        if (nLow > 0 && strText.at(nLow - 1).isHighSurrogate())
            --nLow;
        bytes = strText.left(nLow).toLocal8Bit();
    }
    const int nCopy = qMin(bytes.size(), nSize - 1);
    std::memcpy(pBuffer, bytes.constData(), size_t(nCopy));
    pBuffer[nCopy] = 0;
    return nCopy;
}

QString GetEncodeQStringFromUnChar(const unsigned char *pData, int nSize)
{
    if (!pData || nSize <= 0)
        return QString();
    const char *pText = reinterpret_cast<const char *>(pData);
    const void *pNul = std::memchr(pText, 0, size_t(nSize));
    const int nLength = pNul ? int(static_cast<const char *>(pNul) - pText) : nSize;
    return QString::fromLocal8Bit(pText, nLength);
}

} // namespace LuInterface
