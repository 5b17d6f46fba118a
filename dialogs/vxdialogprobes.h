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

} // namespace VxDialogProbes
