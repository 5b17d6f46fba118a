#include "vxprobetable.h"

#include "vxitems.h"

bool VxProbeTable::canDetect(int nItem) const
{
    if (isUnreadable(nItem))
        return false;
    switch (nItem) {
    case VxItems::SdkFiles:
        return bool(sdkFileCheck);
    case VxItems::EnvVariables:
        return bool(envCheck);
    case VxItems::GigeDriver:
        return bool(gigeDriverCheck);
    case VxItems::Usb3Driver:
        return bool(usb3DriverCheck);
    case VxItems::UsbControllerDriver:
        return bool(usbDriverCheck);
    case VxItems::UsbControllerInfo:
        return bool(usbTreeCheck);
    case VxItems::Firewall:
        return bool(firewallCheck);
    case VxItems::JumboFrame:
        return bool(jumboCheck);
    case VxItems::LineRate:
        return bool(lineRateCheck);
    case VxItems::SystemInfo:
        return bool(systemInfoCheck);
    default:
        return false;
    }
}

bool VxProbeTable::canOptimize(int nItem) const
{
    if (isUnreadable(nItem))
        return false;
    switch (nItem) {
    case VxItems::SdkFiles:
        return bool(sdkFileClear);
    case VxItems::EnvVariables:
        return envRepair && envCheck;
    case VxItems::GigeDriver:
        return gigeDriverInstall && gigeDriverCheck;
    case VxItems::Usb3Driver:
        return usb3DriverInstall && usb3DriverCheck;
    case VxItems::JumboFrame:
        return bool(jumboRepair);
    default:
        return false;
    }
}
