#include "vxprobetable.h"

#include "vxitemregistry.h"

#include "systemroot.h"
#include "usbprobe.h"

// The probes of this platform, as the item rows name them. An item without
// a probe here keeps empty entries and is reported "not available".
VxProbeTable defaultProbeTable(const VxPrivileges &rights)
{
    VxProbeTable table;
    for (const VxItemRow &row : VxItemRegistry::rows()) {
        if (row.defaultProbes)
            table.items.insert(row.id, row.defaultProbes(rights));
    }
    table.usbTreeDestroy = VxUsbProbe::destroyTree;
    table.uUnreadable = SystemRoot::unreadableItems();
    return table;
}
