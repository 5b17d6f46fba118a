#pragma once

#include "netadapters.h"
#include "vxchange.h"
#include "vxrepair.h"

#include <QString>

// The low-level appliers of the host tuning changes (Linux): one change of
// kind Sysctl, UsbfsMemory or RxRing made to the machine below the system
// root. Sysctl and UsbfsMemory write the running value and the file that
// keeps it across boots; RxRing asks the running kernel (live root only).
//
// The keeping files are this program's own: /etc/sysctl.d/90-vetrix-tool.conf
// and /etc/tmpfiles.d/vetrix-tool-usbfs.conf. Each setting in them is
// preceded by a comment holding the value the machine had before this
// program first set it; a change back to that value removes the setting
// again (and the file with its last setting), so an undo leaves the files as
// they were. Other lines of the sysctl file are kept as they are. Files are
// replaced atomically.
//
// The target and value are checked against a closed list: sysctl keys
// net.core.rmem_max, net.core.rmem_default, net.core.netdev_max_backlog
// (0..2147483647) and net.ipv4.conf.<all|default|interface>.rp_filter
// (0, 1, 2); usbfs_memory_mb 0..2147483647; RX rings 1..2^31-1 on a valid
// interface name.
namespace TuningApply {

// The files that keep the values, below the system root.
QString sysctlDropInPath();
QString usbfsTmpfilesPath();

// Whether a change's kind, target and new value pass the checks above.
bool isValid(const VxChange &change, QString *pError = nullptr);

// The /proc/sys path of a sysctl key and the key as sysctl.d writes it
// (dots inside an interface name become "/"); empty for a key not allowed.
QString sysctlPath(const QString &strKey);
QString sysctlFileKey(const QString &strKey);

// Applies a plan's changes in order in this process; stops at the first
// failure (Failed, with the reason). The running system's settings need
// root (NotAuthorized otherwise); another system root is written with the
// user's rights. The changes of a user's optimisation go through the journal
// and the helper instead; this is for a repair run by root itself. The
// interfaces the changes name are checked against links.
VxRepairOutcome applyPlan(const VxPlan &plan, const VxPrivileges &rights,
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

} // namespace TuningApply

// Makes the change (strNew); false with a reason in pError (translated)
// when nothing was changed. A running value written before the keeping file
// failed is set back, so a failure changes nothing.
bool applyTuningChange(const VxChange &change, QString *pError);

// The change target's current running value (for the plan's old value and
// undo checks); false when it cannot be read.
bool readTuningValue(const VxChange &change, QString *pValue);
