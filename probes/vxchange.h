#pragma once

#include <QString>
#include <QVector>

// One change a repair makes to the machine: the item it belongs to, the kind
// of target, the target itself, and its value before and after. A plan is
// the list of changes a repair would make; the journal records the applied
// ones so they can be undone.
struct VxChange
{
    quint32 uItem = 0;  // item id
    QString strKind;    // one of VxChangeKind
    QString strTarget;  // see VxChangeKind
    QString strOld;     // value before; empty: absent
    QString strNew;     // value after; empty: absent (removed)
};

using VxPlan = QVector<VxChange>;

// What became of one change of a plan.
struct VxChangeResult
{
    VxChange change;
    QString strResult; // a VxJournalResult
    QString strReason;
};

namespace VxChangeKind {
// target: sysctl key ("net.core.rmem_max", "net.ipv4.conf.eth0.rp_filter");
// applied at once and kept in /etc/sysctl.d/90-vetrix-tool.conf
inline constexpr char Sysctl[] = "sysctl";
// target: "usbfs_memory_mb"; applied to /sys/module/usbcore/parameters and
// kept by /etc/tmpfiles.d/vetrix-tool-usbfs.conf
inline constexpr char UsbfsMemory[] = "usbfs-memory";
// target: interface name; value: RX ring entries (ethtool netlink)
inline constexpr char RxRing[] = "rx-ring";
// target: variable name; value: its machine-wide value (/etc/environment)
inline constexpr char Environment[] = "env";
// target: interface name; value: MTU
inline constexpr char Mtu[] = "mtu";
// target: file path; new value empty: moved to the quarantine folder
inline constexpr char SdkFile[] = "sdk-file";
} // namespace VxChangeKind
