#include "firewallstatus.h"

#include "cdetectinfo.h"

namespace Firewall {

void check(CDetectInfo &info, const FirewallStatus &status)
{
    info.bNormal = status.isEnabled() ? 0 : 1;
}

} // namespace Firewall
