#include "vxrepair.h"

#include <atomic>

Q_LOGGING_CATEGORY(lcVxRepair, "vetrix.repair")

namespace VxPrivileged {

namespace {
std::atomic<int> g_lastStatus{int(VxRepairStatus::Done)};
}

std::atomic<int> g_rootOverride{-1};

void overrideRoot(int nRoot)
{
    g_rootOverride.store(nRoot);
}

VxRepairStatus lastStatus()
{
    return VxRepairStatus(g_lastStatus.load());
}

void setLastStatus(VxRepairStatus status)
{
    g_lastStatus.store(int(status));
}

} // namespace VxPrivileged
