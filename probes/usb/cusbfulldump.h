#pragma once

// Every descriptor of one USB device as text, laid out like `lsusb -v` (the
// same field names and number formats) so the two can be compared field by
// field: the device descriptor, each configuration with its interfaces
// (every alternate setting), endpoints, interface associations, HID, USB
// Audio 1.0 and USB3 Vision class-specific descriptors, SuperSpeed endpoint
// companions, and the BOS with its device capabilities when it is known.
//
// The walk strides by bLength. Bad bytes end the walk with a line that says
// why (a bLength below 2, a descriptor running past its configuration or
// past the data); unknown descriptors are dumped as hex.

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

class CUsbIdsDb;

struct CUsbDumpDevice
{
    QString strPort; // the device's name in sysfs: "usb1", "1-1.4"
    int nBus = 0;
    int nDevNum = 0;
    int nSpeedMbps = 0; // negotiated speed; 0 when not known
    QByteArray descriptors; // the device descriptor, then every configuration
    QByteArray bos; // the BOS and its capabilities; empty when not known
    QHash<int, QString> mapStrings; // string index -> text, where known
};

namespace CUsbFullDump {
QStringList dump(const CUsbDumpDevice &device, const CUsbIdsDb &names);
} // namespace CUsbFullDump
