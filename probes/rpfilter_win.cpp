#include "rpfilter.h"

// Windows has no reverse-path filter switch per adapter: the item has
// nothing to read and stays normal.
namespace RpFilter {

void check(CRpFilterDetectInfo &info)
{
    info.bApplicable = false;
    info.nAll = -1;
    info.adapters.clear();
    info.bNormal = 1;
}

VxRepairOutcome repair(CRpFilterDetectInfo &info, const VxPrivileges &)
{
    check(info);
    return VxRepairOutcome();
}

} // namespace RpFilter
