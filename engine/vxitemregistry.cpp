#include "vxitemregistry.h"

#include "items/itemrows.h"

#include <algorithm>

VxDetectPass::~VxDetectPass() = default;

namespace VxItemRegistry {

namespace {
QVector<int> idsByRank(int VxItemRow::*pRank, int nGroup = 0)
{
    QVector<const VxItemRow *> ranked;
    for (const VxItemRow &row : rows()) {
        if (row.*pRank > 0 && (nGroup == 0 || row.group == nGroup))
            ranked << &row;
    }
    std::stable_sort(ranked.begin(), ranked.end(),
                     [pRank](const VxItemRow *a, const VxItemRow *b) { return a->*pRank < b->*pRank; });
    QVector<int> ids;
    for (const VxItemRow *pRow : ranked)
        ids << int(pRow->id);
    return ids;
}
} // namespace

const QVector<VxItemRow> &rows()
{
    static const QVector<VxItemRow> all = [] {
        QVector<VxItemRow> list = sdkItemRows() + driverItemRows() + systemItemRows();
        std::sort(list.begin(), list.end(), [](const VxItemRow &a, const VxItemRow &b) { return a.id < b.id; });
        return list;
    }();
    return all;
}

const VxItemRow *row(quint32 nItem)
{
    for (const VxItemRow &candidate : rows()) {
        if (candidate.id == nItem)
            return &candidate;
    }
    return nullptr;
}

QVector<int> detectOrder()
{
    return idsByRank(&VxItemRow::nDetectRank);
}

QVector<int> displayOrder(int nGroup)
{
    return nGroup == 0 ? QVector<int>() : idsByRank(&VxItemRow::nDisplayRank, nGroup);
}

QVector<int> optimizeOrder()
{
    return idsByRank(&VxItemRow::nOptimizeRank);
}

QVector<int> groups()
{
    QVector<int> list;
    for (const VxItemRow &row : rows()) {
        if (row.nDisplayRank > 0 && !list.contains(row.group))
            list << row.group;
    }
    std::sort(list.begin(), list.end());
    return list;
}

quint32 groupMask(int nGroup)
{
    quint32 uMask = 0;
    for (const VxItemRow &row : rows()) {
        if (row.group == nGroup && row.nDisplayRank > 0)
            uMask |= row.id;
    }
    return uMask;
}

quint32 shownMask()
{
    quint32 uMask = 0;
    for (int nGroup : groups())
        uMask |= groupMask(nGroup);
    return uMask;
}

QStringList rowGaps(const VxItemRow &row, const VxItemProbes &probes)
{
    QStringList gaps;
    const bool bUsed = row.nDetectRank > 0 || row.nDisplayRank > 0 || row.nOptimizeRank > 0;
    if (!row.pName || !*row.pName)
        gaps << QStringLiteral("no name");
    if (!bUsed)
        return gaps;
    if (!row.create || !row.fits)
        gaps << QStringLiteral("no record factory");
    if (!row.lines)
        gaps << QStringLiteral("no result lines");
    if (!row.facts)
        gaps << QStringLiteral("no report facts");
    if (row.nDisplayRank > 0 && row.nDetectRank == 0)
        gaps << QStringLiteral("shown but never detected");
    if (row.nDetectRank > 0 && !probes.check)
        gaps << QStringLiteral("detected without a check");
    const bool bClickable = row.button.bEnabledWhenNormal || row.button.bEnabledWhenExceptional;
    if (bClickable && row.action == VxRowAction::None)
        gaps << QStringLiteral("a button that can be clicked but does nothing");
    const bool bRepairText = row.button.exceptionText == VxItems::BtnCheckAndRepair || row.button.exceptionText == VxItems::BtnRepair
        || row.button.exceptionText == VxItems::BtnCheckAndClear;
    if (bRepairText && (row.repair != VxRepairKind::Repair || row.action != VxRowAction::RepairDialog))
        gaps << QStringLiteral("a repair button without a repair");
    if (row.button.exceptionText == VxItems::BtnInstallDriver && row.repair != VxRepairKind::Install)
        gaps << QStringLiteral("an install button without an install");
    if ((row.repair == VxRepairKind::None) != (row.nOptimizeRank == 0))
        gaps << QStringLiteral("optimisation rank and repair kind disagree");
    switch (row.repair) {
    case VxRepairKind::None:
        break;
    case VxRepairKind::Repair:
        if (!probes.repair)
            gaps << QStringLiteral("a repair without a repair probe");
        if (row.recheck != VxRecheck::Never && !probes.check)
            gaps << QStringLiteral("a recheck without a check");
        break;
    case VxRepairKind::Install:
        if (!probes.install || !probes.check)
            gaps << QStringLiteral("an install without its install and check probes");
        if (!row.pInstallLabel)
            gaps << QStringLiteral("an install without a loading text");
        break;
    }
    return gaps;
}

} // namespace VxItemRegistry
