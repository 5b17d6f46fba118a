#pragma once

#include "netadapters.h"
#include "vxchange.h"
#include "vxjournal.h"
#include "vxrepair.h"

#include <QMap>
#include <QStringList>

#include <functional>

// How one kind of change is read and made (as root): read gives the
// target's current value in the form VxChange holds it (empty: absent),
// apply makes the change to strNew. Both answer false with a reason when
// they cannot.
struct VxApplier
{
    std::function<bool(const VxChange &, QString *pValue)> read;
    std::function<bool(const VxChange &, QString *pError)> apply;
};
// Keyed by VxChangeKind.
using VxAppliers = QMap<QString, VxApplier>;

// Applies plans change by change with a journal, and undoes them.
namespace VxApply {

// The appliers of the changes this program makes itself: Environment
// (/etc/environment below the system root), Mtu (the running kernel; the
// current MTU as links gives it) and SdkFile (moved to and from
// strQuarantine).
VxAppliers ownAppliers(
    const QString &strQuarantine, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());
// Every kind of change the repairs make: what vetrix-helper and a program
// running as root apply.
VxAppliers systemAppliers(
    const QString &strQuarantine, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// Whether a change is one the repairs may make: a known kind for its item,
// a target from the closed list of that kind (an interface: one links
// lists), values in range. On refusal *pReason says why.
bool isValidChange(
    const VxChange &change, QString *pReason, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// A new optimisation id ("20261124T142000Z-1a2b3c") and its form.
QString newOptimisationId();
bool isValidOptimisationId(const QString &strOpt);

// Test seam: called after the pending line of change nSeq is synced and
// after the change is made (before its result line).
enum class Stage { Pending, Made };
using StageHook = std::function<void(int nSeq, Stage stage)>;

// Makes the plan's changes in order as optimisation strOpt (root; the
// journal open for writing). A change whose target already holds the new
// value is "unchanged"; one whose target no longer holds the old value, or
// that has no applier, or is not valid (its interfaces looked up in links),
// fails without being tried. When the journal cannot be written no further
// change is made.
QVector<VxChangeResult> apply(const QString &strOpt, const VxPlan &plan, const VxAppliers &appliers, VxJournal &journal,
    const QString &strUndoes = QString(), const StageHook &hook = StageHook(),
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// The optimisation an undo without an id restores: the last repair (not an
// undo) that made a change and that no complete undo restored yet. Empty
// when there is none.
QString lastUndoable(const QVector<VxOptimisation> &vecOpts);
// The changes that restore optimisation strOpt, last change first: for each
// change that was made (or may have been: interrupted), old and new swapped.
// False when the journal has no such optimisation.
bool undoPlan(const QVector<VxOptimisation> &vecOpts, const QString &strOpt, VxPlan *pPlan);

// Runs strVerb ("apply"/"undo") with its arguments in vetrix-helper and
// maps the exit status (VxPrivileges::runHelper in the program).
using HelperRunner = std::function<VxRepairStatus(const QString &strVerb, const QStringList &listArgs)>;

// The helper's arguments for a plan: OPT then ITEM KIND TARGET OLD NEW per change.
QStringList applyArguments(const QString &strOpt, const VxPlan &plan);

// How a plan reaches the machine: in this process with the appliers given
// (root, or another system root written with the user's rights), or else
// through the helper, the results then read back from the journal.
struct Route
{
    bool bInProcess = false;
    VxAppliers appliers; // in process
    // In process: the interfaces the changes are checked against.
    NetAdapters::LinkSource links = NetAdapters::LinkSource::system();
    HelperRunner runHelper; // otherwise
};

// The route of a repair with these rights: in process with
// systemAppliers() and links as root or on another system root (written
// with the user's own rights: the helper acts on the running machine only),
// else through the helper.
Route systemRoute(const VxJournal &journal, const VxPrivileges &privileges = VxPrivileges::system(),
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// Applies the plan (or, when strUndoes is set, the undo of that
// optimisation, the plan then being its undoPlan()) as strOpt.
// *pHelperStatus (if given) receives how the helper ended (Done in process).
QVector<VxChangeResult> run(const QString &strOpt, const VxPlan &plan, const Route &route, VxJournal &journal,
    const QString &strUndoes = QString(), VxRepairStatus *pHelperStatus = nullptr);

} // namespace VxApply
