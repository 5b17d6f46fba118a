#include "rpfilter.h"

// Windows has no reverse-path filter switch per adapter: the item has
// nothing to read and stays normal.
namespace RpFilter {

void check(CRpFilterDetectInfo &info, const NetAdapters::LinkSource &)
{
    info.bApplicable = false;
    info.nAll = -1;
    info.adapters.clear();
    info.bNormal = 1;
}

VxRepairOutcome repair(CRpFilterDetectInfo &info, const VxPrivileges &, const NetAdapters::LinkSource &)
{
    check(info);
    return VxRepairOutcome();
}

} // namespace RpFilter
