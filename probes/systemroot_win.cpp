#include "systemroot.h"

namespace SystemRoot {

// Windows probes read the running machine only.
quint32 unreadableItems()
{
    return 0;
}

} // namespace SystemRoot
