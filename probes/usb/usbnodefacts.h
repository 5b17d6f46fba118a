#pragma once

// What the USB link check and the tree as data read from one node of a
// probekit tree: the connection facts, interfaces, strings, port path,
// speed and a readable name.

#include "probekit.h"

#include <QString>
#include <QVector>

namespace VxUsbNode {

// The facts of a connected external hub or device; bValid false for any
// other node, an empty port or a record without connection facts.
struct CNodeFacts
{
    bool bValid = false;
    bool bHub = false;
    bool bDescriptorRead = false; // the device descriptor came whole (bLength 18, type 1)
    const UsbPortConnectionInfo *pConnection = nullptr;
    const UsbDescriptorRequest *pConfig = nullptr;
    const UsbStringDescriptorNode *pStrings = nullptr;
    const UsbPortLinkInfo *pLink = nullptr;
};
CNodeFacts nodeFacts(const void *pInfo);

// The link facts of a root hub (null for other kinds).
const UsbPortLinkInfo *rootHubLink(const void *pInfo);

struct CInterface
{
    int nNumber = 0;
    int nAlternate = 0;
    int nClass = 0;
    int nSubClass = 0;
    int nProtocol = 0;
};
// The interface descriptors of a configuration block (stride bLength, stops
// at a descriptor that runs past the block).
QVector<CInterface> interfaces(const UsbDescriptorRequest *pConfig);
// A USB3 Vision device: an interface of class 0xEF (miscellaneous), subclass
// 0x05 (the USB3 Vision standard's identification).
bool isUsb3Vision(const QVector<CInterface> &vecInterfaces);

// The text of string descriptor nIndex (empty when 0 or not in the list).
QString stringText(const UsbStringDescriptorNode *pStrings, int nIndex);

// The negotiated speed in kbit/s: the link facts, else the speed code; 0 unknown.
quint32 speedKbps(const UsbPortConnectionInfo *pConnection, const UsbPortLinkInfo *pLink);
// Mbit/s as lsusb writes it: "1.5", "12", "480", "5000"; empty for 0.
QString speedMbpsText(quint32 uKbps);
// "USB 3.20" from a bcdUSB value.
QString bcdText(quint16 uBcd);

// The port path of the link facts (empty when none).
QString portPath(const UsbPortLinkInfo *pLink);

// "Vendor Product": the names from usb.ids, else the device's own strings,
// else "USB device".
QString deviceName(const CNodeFacts &facts);
QString idText(quint16 uId); // "0x046d"

} // namespace VxUsbNode
