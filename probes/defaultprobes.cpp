#include "vxprobetable.h"

#include "usbprobe.h"

#include "cameradrivers.h"
#include "envvars.h"
#include "firewallstatus.h"
#include "jumboframe.h"
#include "linerate.h"
#include "sdkfiles.h"
#include "systeminfo.h"
#include "systemroot.h"

// The probes of this platform, registered by item. An item stays out of the
// table until its probe reads the machine for real.
VxProbeTable defaultProbeTable()
{
    VxProbeTable table;
    table.sdkFileCheck = SdkFiles::check;
    table.sdkFileClear = [](CSDKPathDetectInfo &info) { SdkFiles::clear(info); };
    table.envCheck = EnvVars::check;
    table.envRepair = [](CEnvDetectInfo &info) { EnvVars::repair(info); };
    table.gigeDriverCheck = CameraDrivers::pacedGigeCheck;
    table.gigeDriverInstall = CameraDrivers::installGige;
    table.usb3DriverCheck = CameraDrivers::pacedUsb3Check;
    table.usb3DriverInstall = CameraDrivers::installUsb3;
    table.firewallCheck = Firewall::check;
    table.jumboCheck = JumboFrame::check;
    table.jumboRepair = [](CJumboPacketDetectInfo &info) { JumboFrame::repair(info); };
    table.lineRateCheck = LineRate::check;
    table.systemInfoCheck = SystemInfo::check;
    table.usbDriverCheck = VxUsbProbe::usbDriverCheck;
    table.usbTreeCheck = VxUsbProbe::usbTreeCheck;
    table.usbTreeDestroy = VxUsbProbe::destroyTree;
    table.uUnreadable = SystemRoot::unreadableItems();
    table.gigeInstallerPath = CameraDrivers::gigeInstallScript;
    table.usb3InstallerPath = CameraDrivers::usb3InstallScript;
    return table;
}
