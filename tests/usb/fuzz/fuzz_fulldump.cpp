// Fuzz target: the full descriptor dump over arbitrary bytes. The first two
// bytes say where the descriptors end and the BOS begins (little-endian;
// past the end: no BOS); the rest is the data. Strings are known for the
// indexes 1 to 3, so the string look-ups run too.
#include "cusbfulldump.h"
#include "cusbidsdb.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *pData, size_t nSize)
{
    if (nSize < 2 || nSize > 70000)
        return 0;
    const size_t nSplit = size_t(pData[0] | pData[1] << 8);
    const char *p = reinterpret_cast<const char *>(pData + 2);
    const int n = int(nSize - 2);
    CUsbDumpDevice device;
    // Exact-size copies: a read past the end is a read past the allocation.
    device.descriptors = QByteArray(p, int(qMin<size_t>(nSplit, size_t(n))));
    if (nSplit < size_t(n))
        device.bos = QByteArray(p + nSplit, n - int(nSplit));
    device.nSpeedMbps = (nSize & 1) ? 5000 : 480;
    device.mapStrings = {{1, QStringLiteral("one")}, {2, QStringLiteral("two")}, {3, QStringLiteral("three")}};
    static const CUsbIdsDb names = CUsbIdsDb::fromText("1d6b  Linux Foundation\n\t0002  2.0 root hub\n"
                                                       "C 09  Hub\n\t00  Unused\n\t\t00  Full speed (or root) hub\n");
    const QStringList listLines = CUsbFullDump::dump(device, names);
    // Every line is bounded: a field line never outgrows a dump of the whole input.
    for (const QString &line : listLines)
        if (line.size() > 200 + 3 * int(nSize))
            __builtin_trap();
    return 0;
}
