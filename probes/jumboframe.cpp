#include "jumboframe.h"

#include "cdetectinfo.h"
#include "netadapters.h"

namespace JumboFrame {

void check(CJumboPacketDetectInfo &info, const NetAdapters::LinkSource &links)
{
    info.bNormal = 1;
    info.jumboStates.clear();
    info.jumboValues.clear();
    NetAdapters::buildAdapterList(links);
    for (const CNetAdapter &adapter : NetAdapters::adapterList()) {
        info.jumboStates[adapter.description] = adapter.jumboState;
        info.jumboValues[adapter.description] = adapter.jumboValue;
        if (adapter.jumboState == 0)
            info.bNormal = 0;
    }
    if (NetAdapters::adapterList().isEmpty())
        info.bNormal = 0;
}

VxRepairStatus setJumbo(const QString &strDriverKey, bool bEnable, const VxPrivileges &rights)
{
    return NetAdapters::setJumbo(strDriverKey, bEnable, rights);
}

void restartAdapters()
{
    NetAdapters::restartAdapters(NetAdapters::adapterList());
}

VxRepairOutcome repair(CJumboPacketDetectInfo &info, const VxPrivileges &rights, const NetAdapters::LinkSource &links)
{
    VxRepairStatus result = VxRepairStatus::Done;
    const QList<CNetAdapter> listBefore = NetAdapters::adapterList();
    for (const CNetAdapter &adapter : listBefore) {
        if (adapter.jumboState != 0)
            continue;
        const VxRepairStatus status = setJumbo(adapter.driverKey, true, rights);
        if (status != VxRepairStatus::Done && result == VxRepairStatus::Done)
            result = status;
    }
    // Check again, then restart exactly the adapters that were off before.
    check(info, links);
    const QList<CNetAdapter> listAfter = NetAdapters::adapterList();
    NetAdapters::restartAdapters(listBefore);
    NetAdapters::adapterList() = listAfter;
    if (result != VxRepairStatus::Done)
        return VxRepairOutcome(result, QStringLiteral("enabling jumbo frames"));
    return VxRepairOutcome();
}

} // namespace JumboFrame
