#pragma once

// Item 65536 "USB3 Vision Link": whether the USB3 Vision cameras run at the
// speed they are built for. A camera that fell back to USB 2 (cable, port or
// hub), sits behind a USB 2 hub, or shares its host controller's bandwidth
// with another camera loses frames although its driver is fine.

#include "cdetectinfo.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QVector>

struct UsbRootItem;

// One USB3 Vision device, or another SuperSpeed-capable device (information).
struct CUsbLinkDevice
{
    QString strName; // vendor and product
    QString strPortPath; // "2-1.3"
    QString strController; // the host controller's name
    int nController = 0; // index of the controller in the tree
    quint16 uVendorId = 0;
    quint16 uProductId = 0;
    quint16 uBcdUsb = 0;
    quint32 uSpeedKbps = 0; // negotiated; 0: unknown
    bool bUsb3Vision = false;
    bool bSuperSpeedCapable = false;
    bool bSuperSpeedPlusCapable = false;
    QString strUsb2HubPath; // not empty: the nearest USB 2 hub it is connected behind

    // A USB3 Vision device known to run at High Speed or lower.
    bool isFallback() const { return bUsb3Vision && uSpeedKbps != 0 && uSpeedKbps < 5000000; }
    bool isBehindUsb2Hub() const { return bUsb3Vision && !strUsb2HubPath.isEmpty(); }
};

// A host controller with two or more USB3 Vision devices.
struct CUsbLinkSharedController
{
    QString strController;
    QStringList listPortPaths;
};

class CUsbLinkDetectInfo : public CDetectInfo
{
public:
    CUsbLinkDetectInfo() { nItem = 65536; }
    ~CUsbLinkDetectInfo() override;
    bool bTreeRead = false; // the probe library gave a tree
    QVector<CUsbLinkDevice> devices; // tree order
    QVector<CUsbLinkSharedController> sharedControllers;
    int nUnreadable = 0; // connected devices whose device descriptor could not be read
};

namespace VxUsbLink {

constexpr int kItemId = 65536;

// The rules over a tree (null: no tree). Fills the record and its normal
// flag; touches nothing else.
void analyseTree(const UsbRootItem *pRoot, CUsbLinkDetectInfo &info);
// Builds a tree with the probe library, analyses it and gives it back.
void check(CUsbLinkDetectInfo &info);
void check(CDetectInfo &info); // does nothing for another record class

} // namespace VxUsbLink

// The item's result lines (context "VxOneKeyResult") and JSON facts; empty
// for a record of another class.
QStringList usbLinkLines(const CDetectInfo &info);
QJsonObject usbLinkFacts(const CDetectInfo &info);
