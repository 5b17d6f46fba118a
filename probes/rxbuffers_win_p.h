#pragma once

#include <QString>

struct CRxAdapter;

// Windows internals of the receive buffer item, open to the tests.
namespace RxBuffers {
namespace Detail {

// Reads the driver's *ReceiveBuffers (value, else the default of its
// Ndi\params entry) and the most it offers (the largest number among the
// entry's enum value names, or its numeric "max"), and *InterruptModeration
// (1 on, 0 off, -1 none) from the adapter's class key below
// HKLM\System\CurrentControlSet\Control\Class.
void readDriverSettings(const QString &strDriverKey, CRxAdapter *pAdapter);

// Writes a keyword's value as text, as INF files store them. False when the
// key cannot be opened or written.
bool writeKeyword(const QString &strDriverKey, const QString &strName, const QString &strValue);

} // namespace Detail
} // namespace RxBuffers
