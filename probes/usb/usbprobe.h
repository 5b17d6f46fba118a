#pragma once

#include <QStringList>

struct UsbRootItem;

namespace VxUsbProbe {
// The "USB Controller Info" report lines: every controller, hub and device of
// the tree in tree order. Empty for a null tree.
QStringList treeReportLines(const UsbRootItem *pRoot);
} // namespace VxUsbProbe
