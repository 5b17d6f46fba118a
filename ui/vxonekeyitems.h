#pragma once

#include "vxonekeystate.h"

struct VxProbeTable;

// The one place where the one-key page learns about the diagnosis items: the
// groups a run covers, their masks and rows, the run orders, and what the
// worker's probes can do.
class VxOneKeyRunItems : public VxOneKeyItems
{
public:
    // The table must outlive this object (the worker's own).
    explicit VxOneKeyRunItems(const VxProbeTable &table);

    quint32 runMask() const override;
    int runRowCount() const override;
    QVector<int> leftOutItems(quint32 uMask) const override;
    bool canOptimize(int nItem) const override;
    QString itemName(int nItem) const override;
    // A left-out item's system root cannot give what it reads.
    bool isUnreadable(int nItem) const;

    // The groups every run covers (group bits), and a group's item mask.
    static int &selectedGroups();
    static quint32 groupMask(int nGroup);

private:
    const VxProbeTable &m_table;
};
