#include "systeminfo.h"

#include "cdetectinfo.h"
#include "luinterface.h"

namespace SystemInfo {

// The seven texts are taken as they come, in this order.
void check(CSystemDetectInfo &info)
{
    info.bNormal = 1;
    info.cpu = LuInterface::cpu();
    info.cpuCount = LuInterface::numOfCpu();
    info.byteOrder = LuInterface::byteOrder();
    info.graphicsChips = LuInterface::graphicsChips();
    info.availableMemory = LuInterface::availbleMmeory();
    info.operatingSystem = LuInterface::operatingSys();
    info.resolution = LuInterface::resolution();
}

} // namespace SystemInfo
