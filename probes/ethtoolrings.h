#pragma once

#include <QString>

// An interface's receive ring as its driver reports it.
struct CRxRing
{
    quint32 uRx = 0; // entries in use
    quint32 uRxMax = 0; // the most the driver offers (0: not reported)
};

// Receive ring sizes over the kernel's ethtool netlink interface (generic
// netlink family "ethtool", ETHTOOL_MSG_RINGS_GET / ETHTOOL_MSG_RINGS_SET).
// Both talk to the running kernel: callers decide whether the system root
// is the live one.
namespace EthtoolRings {

// Reads the interface's ring sizes. False when the kernel has no ethtool
// netlink family, the interface does not exist or its driver reports no
// rings; pError (optional) then holds the kernel's reason in English.
bool read(const QString &strName, CRxRing *pRing, QString *pError = nullptr);

// Sets the interface's receive ring to uRx entries (root only). False, with
// the kernel's reason, when the driver refuses the size or has no rings.
bool setRx(const QString &strName, quint32 uRx, QString *pError = nullptr);

} // namespace EthtoolRings
