#pragma once

#include <QList>
#include <QString>

// Windows internals of the adapter list, open to the tests.
namespace NetAdapters {
namespace Detail {

// One present device of the network adapter class.
struct CNetDevice
{
    QString driverKey;  // SPDRP_DRIVER: "{class GUID}\NNNN"
    QString instanceId; // "PCI\VEN_...\..."
};

// The present network class devices of one enumerator ("PCI", "USB"), in
// enumeration order; empty when the class cannot be enumerated.
QList<CNetDevice> networkDevices(const QString &strEnumerator);

// The description of the connected adapter behind a driver key (its
// NetCfgInstanceId looked up in the IP helper's list, operational status
// 3, 4 or 5), or empty.
QString connectedDescription(const QString &strDriverKey);

// The jumbo setting of a driver key: state 0 (off), 1 (on) or 2 (no
// readable setting), and the value in bytes.
int readJumbo(const QString &strDriverKey, int *pValue);

} // namespace Detail
} // namespace NetAdapters
