#include "jumboframe.h"

#include "cdetectinfo.h"
#include "netadapters.h"

namespace JumboFrame {

void check(CJumboPacketDetectInfo &info)
{
    info.bNormal = 1;
    info.jumboStates.clear();
    info.jumboValues.clear();
    NetAdapters::buildAdapterList();
    for (const CNetAdapter &adapter : NetAdapters::adapterList()) {
        info.jumboStates[adapter.description] = adapter.jumboState;
        info.jumboValues[adapter.description] = adapter.jumboValue;
        if (adapter.jumboState == 0)
            info.bNormal = 0;
    }
    if (NetAdapters::adapterList().isEmpty())
        info.bNormal = 0;
}

VxRepairStatus setJumbo(const QString &strDriverKey, bool bEnable)
{
    for (const CNetAdapter &adapter : NetAdapters::adapterList()) {
        if (adapter.driverKey != strDriverKey)
            continue;
        const int nMtu = bEnable ? adapter.nMaxMtu : NetAdapters::kStandardFrame - NetAdapters::kEthernetHeader;
        if (nMtu <= 0 || nMtu == adapter.nMtu)
            return VxRepairStatus::Done;
        const VxRepairStatus status = NetAdapters::setMtu(strDriverKey, nMtu);
        if (status == VxRepairStatus::Done)
            qCInfo(lcVxRepair).noquote() << strDriverKey << "mtu old:" << adapter.nMtu << "new:" << nMtu;
        return status;
    }
    return VxRepairStatus::Failed;
}

void restartAdapters()
{
}

VxRepairStatus repair(CJumboPacketDetectInfo &info)
{
    VxRepairStatus result = VxRepairStatus::Done;
    const QList<CNetAdapter> listBefore = NetAdapters::adapterList();
    for (const CNetAdapter &adapter : listBefore) {
        if (adapter.jumboState != 0)
            continue;
        const VxRepairStatus status = setJumbo(adapter.driverKey, true);
        if (status != VxRepairStatus::Done && result == VxRepairStatus::Done)
            result = status;
    }
    check(info);
    restartAdapters();
    VxPrivileged::setLastStatus(result);
    return result;
}

} // namespace JumboFrame
