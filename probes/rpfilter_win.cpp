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

VxRepairStatus repair(CRpFilterDetectInfo &info)
{
    check(info);
    return VxRepairStatus::Done;
}

} // namespace RpFilter
