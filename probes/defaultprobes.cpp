#include "vxprobetable.h"

// The probes of this platform, registered by item. An item stays out of the
// table until its probe reads the machine for real.
VxProbeTable defaultProbeTable()
{
    VxProbeTable table;
    return table;
}
