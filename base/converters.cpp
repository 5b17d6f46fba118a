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
    const QByteArray bytes = strText.toLocal8Bit();
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
