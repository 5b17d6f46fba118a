#pragma once

#include "vxprobetable.h"
#include "vxrepair.h"

// The probes the detail dialogs and VxOperateRunner call: the platform's
// real probes unless a test installed others. GUI thread only.
namespace VxDialogProbes {

// The table in use (the default table until setTable() is called).
const VxProbeTable &table();
// Replaces the table (tests install fakes here); resetTable() goes back to
// the platform's probes.
void setTable(const VxProbeTable &probeTable);
void resetTable();

// Runs fn and returns how the privileged part of the repair it makes ended
// (VxPrivileged::lastStatus(), reset to Done before the call).
template<typename Fn>
VxRepairStatus runRepair(Fn &&fn)
{
    VxPrivileged::setLastStatus(VxRepairStatus::Done);
    fn();
    return VxPrivileged::lastStatus();
}

} // namespace VxDialogProbes
