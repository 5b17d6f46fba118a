#include "usbprobe.h"

namespace VxUsbProbe {
QStringList treeReportLines(const UsbRootItem *pRoot)
{
    Q_UNUSED(pRoot)
    return {}; // replaced by the USB tree decoder
}
} // namespace VxUsbProbe
