#pragma once

// The USB tree as data (JSON, schema doc/schema/usb-tree.schema.json) and as
// an lsusb -t like text with names and speeds.

#include <QJsonObject>
#include <QStringList>

struct UsbRootItem;

namespace VxUsbProbe {

// Raised when the JSON changes in a way a reader must know.
constexpr int kUsbTreeSchemaVersion = 1;

// Controllers (name, driver, PCI address, ids) with their root hubs, ports
// and the devices and hubs on them. A null tree gives schemaVersion and no
// controllers.
QJsonObject treeJson(const UsbRootItem *pRoot);
// The same tree as indented text lines.
QStringList treeText(const UsbRootItem *pRoot);

} // namespace VxUsbProbe
