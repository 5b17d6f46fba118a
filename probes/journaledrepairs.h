#pragma once

#include "netadapters.h"
#include "vxchange.h"
#include "vxrepair.h"

class CEnvDetectInfo;
class CJumboPacketDetectInfo;
class CSDKPathDetectInfo;
class VxJournal;

// The Linux repairs of items 1, 2 and 256 made as plans through the journal,
// so that each can be undone: the plan of the record (RepairPlans), applied
// as one optimisation (VxApply::run on the route of the rights given), then
// the item checked again. They fit the rows' repair entries. Windows keeps
// no journal: there they are the direct repairs, and applyPlan refuses a
// non-empty plan.
namespace JournaledRepairs {

// Applies a plan as one optimisation; Done when every change was made (or
// was already made), else the helper's status or Failed with the first
// failed change's reason. In process, the interfaces the changes name are
// those of links.
VxRepairOutcome applyPlan(const VxPlan &plan, const VxPrivileges &rights, VxJournal &journal,
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

VxRepairOutcome repairSdkFiles(CSDKPathDetectInfo &info, const VxPrivileges &rights = VxPrivileges::system());
VxRepairOutcome repairEnvironment(CEnvDetectInfo &info, const VxPrivileges &rights = VxPrivileges::system());
VxRepairOutcome repairJumbo(CJumboPacketDetectInfo &info, const VxPrivileges &rights = VxPrivileges::system(),
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// Whether this system journals its repairs (and so can undo them).
bool isJournaled();

// One undo of a journaled optimisation.
struct UndoRun
{
    QString strUndone; // the optimisation restored; empty: nothing to undo
    QString strOpt;    // the undo's own id; empty when no change was run
    VxPlan plan;       // the restoring changes, last change first
    QVector<VxChangeResult> vecResults;
};

// Restores optimisation strUndone (empty: the last one not yet undone) as a
// new journaled optimisation on the route of rights; bDryRun only plans.
// Nothing to undo (or no such optimisation) leaves strUndone empty. Windows
// keeps no journal and has nothing to undo.
UndoRun undo(const QString &strUndone, bool bDryRun, const VxPrivileges &rights = VxPrivileges::system());

} // namespace JournaledRepairs
