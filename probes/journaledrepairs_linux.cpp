#include "journaledrepairs.h"

#include "cdetectinfo.h"
#include "envvars.h"
#include "jumboframe.h"
#include "repairplans.h"
#include "sdkfiles.h"
#include "vxapply.h"
#include "vxjournal.h"

namespace JournaledRepairs {

VxRepairOutcome applyPlan(
    const VxPlan &plan, const VxPrivileges &rights, VxJournal &journal, const NetAdapters::LinkSource &links)
{
    if (plan.isEmpty())
        return VxRepairOutcome();
    VxRepairStatus helperStatus = VxRepairStatus::Done;
    const QVector<VxChangeResult> vecResults = VxApply::run(VxApply::newOptimisationId(), plan,
        VxApply::systemRoute(journal, rights, links), journal, QString(), &helperStatus);
    for (const VxChangeResult &result : vecResults) {
        if (result.strResult == QLatin1String(VxJournalResult::Done)
            || result.strResult == QLatin1String(VxJournalResult::Unchanged))
            continue;
        if (helperStatus != VxRepairStatus::Done)
            return VxRepairOutcome(helperStatus, result.strReason);
        return VxRepairOutcome::failed(result.change.strTarget + QStringLiteral(": ") + result.strReason);
    }
    return VxRepairOutcome();
}

VxRepairOutcome repairSdkFiles(CSDKPathDetectInfo &info, const VxPrivileges &rights)
{
    VxJournal journal;
    const VxRepairOutcome outcome = applyPlan(RepairPlans::sdkFilesPlan(info), rights, journal);
    SdkFiles::check(info);
    return outcome;
}

VxRepairOutcome repairEnvironment(CEnvDetectInfo &info, const VxPrivileges &rights)
{
    VxJournal journal;
    const VxRepairOutcome outcome = applyPlan(RepairPlans::environmentPlan(info), rights, journal);
    // What the machine's file now holds counts as pending until the next login.
    EnvVars::check(info);
    return outcome;
}

VxRepairOutcome repairJumbo(
    CJumboPacketDetectInfo &info, const VxPrivileges &rights, const NetAdapters::LinkSource &links)
{
    VxJournal journal;
    const VxRepairOutcome outcome = applyPlan(RepairPlans::jumboPlan(info, links), rights, journal, links);
    JumboFrame::check(info, links);
    return outcome;
}

bool isJournaled()
{
    return true;
}

UndoRun undo(const QString &strUndone, bool bDryRun, const VxPrivileges &rights)
{
    UndoRun run;
    VxJournal journal;
    const QVector<VxOptimisation> vecOpts = journal.optimisations();
    const QString strOpt = strUndone.isEmpty() ? VxApply::lastUndoable(vecOpts) : strUndone;
    if (strOpt.isEmpty() || !VxApply::undoPlan(vecOpts, strOpt, &run.plan))
        return run;
    run.strUndone = strOpt;
    if (bDryRun || run.plan.isEmpty())
        return run;
    run.strOpt = VxApply::newOptimisationId();
    run.vecResults = VxApply::run(run.strOpt, run.plan, VxApply::systemRoute(journal, rights), journal, strOpt);
    return run;
}

} // namespace JournaledRepairs
