#include "systemroot.h"

#include "netadapters.h"
#include "vxitemid.h"

namespace SystemRoot {

// The network items read the interfaces below sys/class/net; a root without
// that folder (a disk image: sysfs exists only while a system runs) has none.
quint32 unreadableItems()
{
    if (!NetAdapters::linksReadable())
        return quint32(VxItems::LineRate) | quint32(VxItems::JumboFrame);
    return 0;
}

} // namespace SystemRoot
