#include "vxonekeyitems.h"

#include "vxitems.h"
#include "vxprobetable.h"

VxOneKeyRunItems::VxOneKeyRunItems(const VxProbeTable &table)
    : m_table(table)
{
}

// The groups a run covers, chosen once for the whole program: every group
// that has rows.
int &VxOneKeyRunItems::selectedGroups()
{
    static int nGroups = [] {
        int nAll = 0;
        for (int nGroup : VxItems::groups())
            nAll |= nGroup;
        return nAll;
    }();
    return nGroups;
}

quint32 VxOneKeyRunItems::groupMask(int nGroup)
{
    return VxItems::groupMask(nGroup);
}

quint32 VxOneKeyRunItems::runMask() const
{
    quint32 uMask = 0;
    for (int nGroup : VxItems::groups()) {
        if (selectedGroups() & nGroup)
            uMask |= groupMask(nGroup);
    }
    return uMask;
}

int VxOneKeyRunItems::runRowCount() const
{
    int nRows = 0;
    for (int nGroup : VxItems::groups()) {
        if (selectedGroups() & nGroup)
            nRows += VxItems::displayOrder(nGroup).size();
    }
    return nRows;
}

QVector<int> VxOneKeyRunItems::leftOutItems(quint32 uMask) const
{
    QVector<int> listItems;
    for (int nItem : VxItems::detectOrder()) {
        if ((uMask & quint32(nItem)) && !m_table.canDetect(nItem))
            listItems << nItem;
    }
    return listItems;
}

bool VxOneKeyRunItems::canOptimize(int nItem) const
{
    return VxItems::optimizeOrder().contains(nItem) && m_table.canOptimize(nItem);
}

QString VxOneKeyRunItems::itemName(int nItem) const
{
    return VxItems::itemName(nItem);
}

bool VxOneKeyRunItems::isUnreadable(int nItem) const
{
    return m_table.isUnreadable(nItem);
}
