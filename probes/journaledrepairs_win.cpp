#include "journaledrepairs.h"

#include "cdetectinfo.h"
#include "envvars.h"
#include "jumboframe.h"
#include "sdkfiles.h"

// Windows keeps no journal: the repairs are the direct ones.
namespace JournaledRepairs {

VxRepairOutcome applyPlan(const VxPlan &plan, const VxPrivileges &, VxJournal &, const NetAdapters::LinkSource &)
{
    if (plan.isEmpty())
        return VxRepairOutcome();
    return VxRepairOutcome::failed(QStringLiteral("no change journal on this system"));
}

VxRepairOutcome repairSdkFiles(CSDKPathDetectInfo &info, const VxPrivileges &rights)
{
    return SdkFiles::clear(info, rights);
}

VxRepairOutcome repairEnvironment(CEnvDetectInfo &info, const VxPrivileges &rights)
{
    return EnvVars::repair(info, rights);
}

VxRepairOutcome repairJumbo(
    CJumboPacketDetectInfo &info, const VxPrivileges &rights, const NetAdapters::LinkSource &links)
{
    return JumboFrame::repair(info, rights, links);
}

bool isJournaled()
{
    return false;
}

UndoRun undo(const QString &, bool, const VxPrivileges &)
{
    return UndoRun();
}

} // namespace JournaledRepairs
