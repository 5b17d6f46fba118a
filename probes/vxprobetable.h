#pragma once

#include <QStringList>

#include <functional>

class CDetectInfo;
class CSDKPathDetectInfo;
class CEnvDetectInfo;
class CUSBControllerDriverInfo;
class CUsbBasicDetectInfo;
class CJumboPacketDetectInfo;
class CNetworkSpeedDetectInfo;
class CSystemDetectInfo;
struct UsbRootItem;

// The checks and repairs the operate thread calls, one entry per item. An
// empty entry means the item has no probe on this platform: the thread does
// not run it and reports say "not available". Tests install fakes here.
struct VxProbeTable
{
    // item 1
    std::function<void(CSDKPathDetectInfo &)> sdkFileCheck;
    std::function<void(CSDKPathDetectInfo &)> sdkFileClear;
    // item 2
    std::function<void(CEnvDetectInfo &)> envCheck;
    std::function<void(CEnvDetectInfo &)> envRepair;
    // items 4 and 8: the check sets bNormal; the install returns whether the
    // installer was found and started (it does not wait for it)
    std::function<void(CDetectInfo &)> gigeDriverCheck;
    std::function<bool()> gigeDriverInstall;
    std::function<void(CDetectInfo &)> usb3DriverCheck;
    std::function<bool()> usb3DriverInstall;
    // item 32: fills the record and hands back a new USB tree (or null)
    std::function<void(CUSBControllerDriverInfo &, UsbRootItem **)> usbDriverCheck;
    // item 512: builds a new tree into the record
    std::function<void(CUsbBasicDetectInfo &)> usbTreeCheck;
    // frees a tree built by either of the two above (null is fine)
    std::function<void(UsbRootItem *)> usbTreeDestroy;
    // item 1024: bNormal = firewall off
    std::function<void(CDetectInfo &)> firewallCheck;
    // item 256
    std::function<void(CJumboPacketDetectInfo &)> jumboCheck;
    std::function<void(CJumboPacketDetectInfo &)> jumboRepair;
    // item 128
    std::function<void(CNetworkSpeedDetectInfo &)> lineRateCheck;
    // item 2048
    std::function<void(CSystemDetectInfo &)> systemInfoCheck;
    // items 4 and 8: where the installer is looked for, so that a missing
    // one can be named (optional)
    std::function<QString()> gigeInstallerPath;
    std::function<QString()> usb3InstallerPath;

    // Items that have a probe here but cannot read the system being
    // diagnosed (another system root without their source): not run, and
    // reported "not available" for that reason.
    quint32 uUnreadable = 0;
    bool isUnreadable(int nItem) const { return (uUnreadable & quint32(nItem)) != 0; }

    bool canDetect(int nItem) const;
    bool canOptimize(int nItem) const;
};

// The real probes of this platform.
VxProbeTable defaultProbeTable();
