#include "vxprobetable.h"

#include "vxitemregistry.h"

Q_LOGGING_CATEGORY(lcVxProbes, "vetrix.probes")

bool VxProbeTable::canDetect(int nItem) const
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    if (!pRow || pRow->nDetectRank == 0 || isUnreadable(nItem))
        return false;
    return bool(probes(quint32(nItem)).check);
}

bool VxProbeTable::canOptimize(int nItem) const
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    if (!pRow || pRow->nOptimizeRank == 0 || isUnreadable(nItem))
        return false;
    const VxItemProbes entries = probes(quint32(nItem));
    switch (pRow->repair) {
    case VxRepairKind::None:
        return false;
    case VxRepairKind::Repair:
        return entries.repair && (pRow->recheck != VxRecheck::Always || entries.check);
    case VxRepairKind::Install:
        return entries.install && entries.check;
    }
    return false;
}
