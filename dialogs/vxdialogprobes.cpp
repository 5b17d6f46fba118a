#include "vxdialogprobes.h"

#include "vxoperatethread.h"

#include <memory>

namespace VxDialogProbes {

namespace {
std::unique_ptr<VxProbeTable> &current()
{
    static std::unique_ptr<VxProbeTable> pTable;
    return pTable;
}
} // namespace

VxProbeTable table()
{
    if (const std::unique_ptr<VxProbeTable> &pTable = current())
        return *pTable;
    // A thread that is never started tells which table threads get now.
    const VxOperateThread probe;
    return probe.probeTable();
}

void setTable(const VxProbeTable &probeTable)
{
    current() = std::make_unique<VxProbeTable>(probeTable);
}

void resetTable()
{
    current().reset();
}

} // namespace VxDialogProbes
