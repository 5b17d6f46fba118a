#pragma once

#include "vxprobetable.h"
#include "vxrepair.h"

// The probes the detail dialogs and VxOperateRunner call. By default the
// same table a new VxOperateThread gets (the platform's probes, or the one a
// test installed with VxOperateThread::setProbeTableSource); setTable()
// overrides it for the dialogs alone. GUI thread only.
namespace VxDialogProbes {

VxProbeTable table();
// Replaces the table (tests install fakes here); resetTable() goes back to
// the operate thread's.
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
