#include "vxonekeyitems.h"

#include "vxitems.h"
#include "vxprobetable.h"

VxOneKeyRunItems::VxOneKeyRunItems(const VxProbeTable &table)
    : m_table(table)
{
}

// The groups a run covers, chosen once for the whole program: all three.
int &VxOneKeyRunItems::selectedGroups()
{
    static int nGroups = VxItems::SdkGroup | VxItems::DriverGroup | VxItems::SystemGroup;
    return nGroups;
}

quint32 VxOneKeyRunItems::groupMask(int nGroup)
{
    switch (nGroup) {
    case VxItems::SdkGroup:
        return VxItems::kSdkGroupMask;
    case VxItems::DriverGroup:
        return VxItems::kDriverGroupMask;
    case VxItems::SystemGroup:
        return VxItems::kSystemGroupMask;
    default:
        return 0;
    }
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
