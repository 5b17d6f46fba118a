#include "vxprobetable.h"

#include "vxitemregistry.h"

#include "luinterface.h"
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
    // A mounted image's driver installers are its own programs: started here
    // they would install into this machine, not into the image.
    if (!LuInterface::isLiveRoot()) {
        for (VxItemProbes &probes : table.items) {
            if (probes.install)
                probes.install = [] { return VxRepairOutcome(VxRepairStatus::OtherSystem, QStringLiteral("installer of another system root")); };
        }
    }
    table.usbTreeDestroy = VxUsbProbe::destroyTree;
    table.uUnreadable = SystemRoot::unreadableItems();
    return table;
}
