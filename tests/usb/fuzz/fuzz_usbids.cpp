// Fuzz target: the usb.ids parser (vendor lines "vvvv  Name" up to the
// class lists) over arbitrary text. Besides crashes it checks that every
// name it returns is a trimmed, non-empty text and that every id it returns
// starts a line of the input.
#include "cusbids.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize > 1000000)
        return 0;
    const QByteArray text(reinterpret_cast<const char *>(pData), int(nSize));
    const QHash<quint16, QString> map = CUsbIds::parseVendors(text);
    const QByteArray lowered = "\n" + text.toLower();
    for (auto it = map.cbegin(); it != map.cend(); ++it) {
        if (it.value().isEmpty() || it.value() != it.value().trimmed())
            std::abort();
        char szLine[8];
        std::snprintf(szLine, sizeof szLine, "\n%04x", unsigned(it.key()));
        if (!lowered.contains(szLine))
            std::abort();
    }
    return 0;
}
