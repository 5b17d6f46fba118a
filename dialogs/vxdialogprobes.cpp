#include "vxdialogprobes.h"

#include <memory>

namespace VxDialogProbes {

namespace {
std::unique_ptr<VxProbeTable> &current()
{
    static std::unique_ptr<VxProbeTable> pTable;
    return pTable;
}
} // namespace

const VxProbeTable &table()
{
    std::unique_ptr<VxProbeTable> &pTable = current();
    if (!pTable)
        pTable = std::make_unique<VxProbeTable>(defaultProbeTable());
    return *pTable;
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
