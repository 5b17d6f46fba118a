#include "repairplans.h"

// Windows repairs are not journaled: they cannot say beforehand what they
// change, so their plans are empty.
namespace RepairPlans {

VxPlan environmentPlan(const CEnvDetectInfo &)
{
    return VxPlan();
}

VxPlan jumboPlan(const CJumboPacketDetectInfo &, const NetAdapters::LinkSource &)
{
    return VxPlan();
}

VxPlan sdkFilesPlan(const CSDKPathDetectInfo &)
{
    return VxPlan();
}

} // namespace RepairPlans
