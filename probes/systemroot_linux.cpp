#include "systemroot.h"

#include "luinterface.h"
#include "netadapters.h"
#include "usblink.h"
#include "vxitemid.h"

#include <QFileInfo>

namespace SystemRoot {

// Sources a system image cannot stand in for:
// - the network items read the interfaces below sys/class/net; a root
//   without that folder (a disk image: sysfs exists only while a system
//   runs) has none;
// - the GigE filter driver is asked through its device node, which in an
//   image would reach the driver of the machine running the program;
// - the USB items read the USB and PCI devices of sysfs;
// - the tuning items read the kernel's running values (usbcore's
//   parameters in sysfs, the net sysctls in /proc/sys), which an image has
//   only when it is a captured copy of a running system. Its configuration
//   files (/etc/sysctl.d, /etc/tmpfiles.d) say what a boot would set, not
//   what the kernel uses, so they do not stand in for them.
quint32 unreadableItems()
{
    quint32 uMask = 0;
    if (!NetAdapters::linksReadable())
        uMask |= quint32(VxItems::LineRate) | quint32(VxItems::JumboFrame);
    if (LuInterface::isLiveRoot())
        return uMask;
    uMask |= quint32(VxItems::GigeDriver);
    const bool bUsbTree = QFileInfo(LuInterface::sysPath(QStringLiteral("/sys/bus/usb/devices"))).isDir()
                          || QFileInfo(LuInterface::sysPath(QStringLiteral("/sys/bus/pci/devices"))).isDir();
    if (!bUsbTree)
        uMask |= quint32(VxItems::UsbControllerDriver) | quint32(VxItems::UsbControllerInfo) | quint32(VxUsbLink::kItemId);
    const auto lacks = [](const char *pPath) { return !QFileInfo::exists(LuInterface::sysPath(QLatin1String(pPath))); };
    if (lacks("/sys/module/usbcore/parameters/usbfs_memory_mb"))
        uMask |= quint32(VxItems::UsbBufferMemory);
    if (lacks("/proc/sys/net/core/rmem_max"))
        uMask |= quint32(VxItems::ReceiveBuffers);
    if (lacks("/proc/sys/net/ipv4/conf/all/rp_filter"))
        uMask |= quint32(VxItems::ReversePathFilter);
    return uMask;
}

} // namespace SystemRoot
