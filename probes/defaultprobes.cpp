#include "vxprobetable.h"

#include "usbprobe.h"

// The probes of this platform, registered by item. An item stays out of the
// table until its probe reads the machine for real.
VxProbeTable defaultProbeTable()
{
    VxProbeTable table;
    table.usbDriverCheck = VxUsbProbe::usbDriverCheck;
    table.usbTreeCheck = VxUsbProbe::usbTreeCheck;
    table.usbTreeDestroy = VxUsbProbe::destroyTree;
    return table;
}
