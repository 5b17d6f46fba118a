#pragma once

// The USB devices of sysfs below the system root ($VETRIX_SYSROOT), read
// for the full descriptor dump. sysfs keeps what the kernel read when it
// enumerated the device: the device descriptor and every configuration
// ("descriptors"), the BOS on newer kernels ("bos_descriptors"), and only
// some strings: manufacturer, product and serial number, the active
// configuration's string and the strings of the current alternate settings.
// Other strings would need requests to the live device and stay unknown.

#include "cusbfulldump.h"

#include <QStringList>

namespace CUsbSysfsDevices {
// The names of the USB devices ("usb1", "1-1.4"), root hubs first, by bus
// and port path.
QStringList deviceNames();
// Reads one device; false when there is no such device or it has no descriptors.
bool read(const QString &strName, CUsbDumpDevice &device);
// Whether the text is a USB device name as sysfs spells it ("usb1", "1-1.4").
bool isDeviceName(const QString &strName);
} // namespace CUsbSysfsDevices
