#include "usblink.h"

#include "cusbtreedecoder.h"
#include "probekit.h"
#include "usbnodefacts.h"
#include "usbprobe.h"

#include <QCoreApplication>
#include <QJsonArray>

CUsbLinkDetectInfo::~CUsbLinkDetectInfo() = default;

namespace VxUsbLink {

namespace {

constexpr int kMaxDepth = 16;
constexpr int kMaxNodes = 20000;
constexpr quint32 kSuperSpeedKbps = 5000000;

struct CWalk
{
    CUsbLinkDetectInfo &info;
    QString strController;
    int nController = 0;
    int nBudget = kMaxNodes;
};

// A hub that runs at High Speed or lower: its speed says so, or, when the
// speed is unknown, its descriptor names no USB 3 version.
bool isUsb2Hub(const VxUsbNode::CNodeFacts &facts, quint32 uKbps)
{
    if (uKbps != 0)
        return uKbps < kSuperSpeedKbps;
    return facts.bDescriptorRead && facts.pConnection->DeviceDescriptor.bcdUSB < 0x0300;
}

bool linkFlag(const UsbPortLinkInfo *pLink, quint32 uFlag)
{
    return pLink && (pLink->FlagsKnown & pLink->Flags & uFlag);
}

void walk(const UsbListNode *pList, int nDepth, const QString &strUsb2Hub, CWalk &w)
{
    if (nDepth > kMaxDepth)
        return;
    for (const UsbListNode *pCell = pList; pCell && w.nBudget > 0; pCell = pCell->pNext, --w.nBudget) {
        const UsbTreeItem *pItem = pCell->pItem;
        if (!pItem || !pItem->pInfo)
            continue;
        const VxUsbNode::CNodeFacts facts = VxUsbNode::nodeFacts(pItem->pInfo);
        if (!facts.bValid) {
            if (*static_cast<const qint32 *>(pItem->pInfo) == UsbNodeRootHub)
                walk(pItem->pChildren, nDepth + 1, strUsb2Hub, w);
            continue;
        }
        const quint32 uKbps = VxUsbNode::speedKbps(facts.pConnection, facts.pLink);
        const QString strPath = VxUsbNode::portPath(facts.pLink);
        if (!facts.bDescriptorRead) {
            ++w.info.nUnreadable;
        } else if (!facts.bHub) {
            const UsbDeviceDescriptor &dd = facts.pConnection->DeviceDescriptor;
            CUsbLinkDevice d;
            d.bUsb3Vision = VxUsbNode::isUsb3Vision(VxUsbNode::interfaces(facts.pConfig));
            d.uSpeedKbps = uKbps;
            d.bSuperSpeedPlusCapable = linkFlag(facts.pLink, UsbLinkSuperSpeedPlusCapable) || uKbps >= 10000000;
            // A USB3 Vision device is a SuperSpeed device by its standard,
            // also when it fell back and reports bcdUSB 0x0210.
            d.bSuperSpeedCapable = d.bUsb3Vision || d.bSuperSpeedPlusCapable || dd.bcdUSB >= 0x0300
                || linkFlag(facts.pLink, UsbLinkSuperSpeedCapable) || uKbps >= kSuperSpeedKbps;
            if (d.bSuperSpeedCapable) {
                d.strName = VxUsbNode::deviceName(facts);
                d.strPortPath = strPath;
                d.strController = w.strController;
                d.nController = w.nController;
                d.uVendorId = dd.idVendor;
                d.uProductId = dd.idProduct;
                d.uBcdUsb = dd.bcdUSB;
                if (d.bUsb3Vision)
                    d.strUsb2HubPath = strUsb2Hub;
                w.info.devices << d;
            }
        }
        if (facts.bHub) {
            const bool bUsb2 = isUsb2Hub(facts, uKbps);
            walk(pItem->pChildren, nDepth + 1, bUsb2 ? (strPath.isEmpty() ? QStringLiteral("?") : strPath) : strUsb2Hub,
                w);
        }
    }
}

} // namespace

void analyseTree(const UsbRootItem *pRoot, CUsbLinkDetectInfo &info)
{
    info.devices.clear();
    info.sharedControllers.clear();
    info.nUnreadable = 0;
    info.bTreeRead = pRoot != nullptr;
    if (!pRoot) {
        info.bNormal = 0;
        return;
    }
    CWalk w {info, QString(), 0, kMaxNodes};
    int nIndex = 0;
    for (const UsbListNode *pCell = pRoot->pChildren; pCell && w.nBudget > 0; pCell = pCell->pNext, --w.nBudget) {
        const UsbTreeItem *pItem = pCell->pItem;
        if (!pItem || !pItem->pInfo || *static_cast<const qint32 *>(pItem->pInfo) != UsbNodeController)
            continue;
        const auto *pController = static_cast<const UsbControllerInfo *>(pItem->pInfo);
        w.strController = CUsbTreeDecoder::wideText(pController->pDeviceDesc);
        if (w.strController.isEmpty())
            w.strController = CUsbTreeDecoder::wideText(pItem->pName);
        w.nController = nIndex++;
        const int nFirst = info.devices.size();
        walk(pItem->pChildren, 1, QString(), w);
        CUsbLinkSharedController shared;
        shared.strController = w.strController;
        for (int i = nFirst; i < info.devices.size(); ++i)
            if (info.devices.at(i).bUsb3Vision)
                shared.listPortPaths << info.devices.at(i).strPortPath;
        if (shared.listPortPaths.size() >= 2)
            info.sharedControllers << shared;
    }
    bool bNormal = info.sharedControllers.isEmpty();
    for (const CUsbLinkDevice &d : info.devices)
        bNormal = bNormal && !d.isFallback() && !d.isBehindUsb2Hub();
    info.bNormal = bNormal ? 1 : 0;
}

void check(CUsbLinkDetectInfo &info)
{
    UsbRootItem *pRoot = VxUsbProbe::buildTree();
    analyseTree(pRoot, info);
    VxUsbProbe::destroyTree(pRoot);
}

void check(CDetectInfo &info)
{
    if (auto *pLink = dynamic_cast<CUsbLinkDetectInfo *>(&info))
        check(*pLink);
}

} // namespace VxUsbLink

namespace {

QString speedText(quint32 uKbps)
{
    switch (uKbps) {
    case 0:
        return QCoreApplication::translate("VxOneKeyResult", "an unknown speed");
    case 1500:
        return QCoreApplication::translate("VxOneKeyResult", "1.5 Mbit/s (Low Speed)");
    case 12000:
        return QCoreApplication::translate("VxOneKeyResult", "12 Mbit/s (Full Speed)");
    case 480000:
        return QCoreApplication::translate("VxOneKeyResult", "480 Mbit/s (High Speed)");
    case 5000000:
        return QCoreApplication::translate("VxOneKeyResult", "5 Gbit/s (SuperSpeed)");
    default:
        break;
    }
    if (uKbps >= 10000000)
        return QCoreApplication::translate("VxOneKeyResult", "%1 Gbit/s (SuperSpeedPlus)").arg(uKbps / 1000000);
    return QCoreApplication::translate("VxOneKeyResult", "%1 Mbit/s").arg(VxUsbNode::speedMbpsText(uKbps));
}

QString capabilityText(const CUsbLinkDevice &d)
{
    if (d.bSuperSpeedPlusCapable)
        return QCoreApplication::translate("VxOneKeyResult", "SuperSpeedPlus");
    if (d.bSuperSpeedCapable)
        return QCoreApplication::translate("VxOneKeyResult", "SuperSpeed");
    return VxUsbNode::bcdText(d.uBcdUsb);
}

QString deviceText(const CUsbLinkDevice &d)
{
    return QStringLiteral("%1 (%2:%3)")
        .arg(d.strName)
        .arg(d.uVendorId, 4, 16, QLatin1Char('0'))
        .arg(d.uProductId, 4, 16, QLatin1Char('0'));
}

QString portText(const CUsbLinkDevice &d)
{
    return d.strPortPath.isEmpty() ? QStringLiteral("?") : d.strPortPath;
}

} // namespace

QStringList usbLinkLines(const CDetectInfo &record)
{
    QStringList lines;
    const auto *pInfo = dynamic_cast<const CUsbLinkDetectInfo *>(&record);
    if (!pInfo)
        return lines;
    if (!pInfo->bTreeRead) {
        lines << QCoreApplication::translate(
            "VxOneKeyResult", "The USB tree could not be read (the probe library is missing).");
        return lines;
    }
    int nCameras = 0;
    for (const CUsbLinkDevice &d : pInfo->devices) {
        if (!d.bUsb3Vision)
            continue;
        ++nCameras;
        const QString strDevice = deviceText(d);
        const QString strSpeed = speedText(d.uSpeedKbps);
        const QString strCapability = capabilityText(d);
        if (d.isFallback())
            lines << QCoreApplication::translate("VxOneKeyResult",
                "USB3 Vision camera %1 at port %2 runs at %3 although it is capable of %4: it fell back to "
                "USB 2 (check the cable, the port and any hub).")
                         .arg(strDevice, portText(d), strSpeed, strCapability);
        if (d.isBehindUsb2Hub())
            lines << QCoreApplication::translate("VxOneKeyResult",
                "USB3 Vision camera %1 at port %2 (%3, capable of %4) is connected behind the USB 2 hub at "
                "port %5.")
                         .arg(strDevice, portText(d), strSpeed, strCapability, d.strUsb2HubPath);
        if (!d.isFallback() && !d.isBehindUsb2Hub())
            lines << QCoreApplication::translate(
                "VxOneKeyResult", "USB3 Vision camera %1 at port %2: %3, capable of %4.")
                         .arg(strDevice, portText(d), strSpeed, strCapability);
    }
    for (const CUsbLinkSharedController &c : pInfo->sharedControllers)
        lines << QCoreApplication::translate("VxOneKeyResult",
            "Warning: %1 USB3 Vision cameras share the host controller %2 and its bandwidth (ports %3).")
                     .arg(c.listPortPaths.size())
                     .arg(c.strController, c.listPortPaths.join(QStringLiteral(", ")));
    if (nCameras == 0)
        lines << QCoreApplication::translate("VxOneKeyResult", "No USB3 Vision camera is connected.");
    for (const CUsbLinkDevice &d : pInfo->devices)
        if (!d.bUsb3Vision)
            lines << QCoreApplication::translate("VxOneKeyResult", "Information: %1 at port %2: %3, capable of %4.")
                         .arg(deviceText(d), portText(d), speedText(d.uSpeedKbps), capabilityText(d));
    if (pInfo->nUnreadable > 0)
        lines << QCoreApplication::translate("VxOneKeyResult",
            "Information: %1 connected USB devices whose descriptors could not be read were left out.")
                     .arg(pInfo->nUnreadable);
    return lines;
}

QJsonObject usbLinkFacts(const CDetectInfo &record)
{
    QJsonObject facts;
    const auto *pInfo = dynamic_cast<const CUsbLinkDetectInfo *>(&record);
    if (!pInfo)
        return facts;
    facts.insert(QStringLiteral("treeRead"), pInfo->bTreeRead);
    QJsonArray devices;
    for (const CUsbLinkDevice &d : pInfo->devices) {
        QJsonObject o;
        o.insert(QStringLiteral("name"), d.strName);
        o.insert(QStringLiteral("vendorId"), VxUsbNode::idText(d.uVendorId));
        o.insert(QStringLiteral("productId"), VxUsbNode::idText(d.uProductId));
        o.insert(QStringLiteral("bcdUSB"), QStringLiteral("0x%1").arg(d.uBcdUsb, 4, 16, QLatin1Char('0')));
        o.insert(QStringLiteral("portPath"), d.strPortPath);
        o.insert(QStringLiteral("controller"), d.strController);
        o.insert(QStringLiteral("speedMbps"), d.uSpeedKbps ? QJsonValue(d.uSpeedKbps / 1000.0) : QJsonValue());
        o.insert(QStringLiteral("usb3Vision"), d.bUsb3Vision);
        o.insert(QStringLiteral("superSpeedCapable"), d.bSuperSpeedCapable);
        o.insert(QStringLiteral("superSpeedPlusCapable"), d.bSuperSpeedPlusCapable);
        o.insert(QStringLiteral("fallback"), d.isFallback());
        o.insert(QStringLiteral("behindUsb2Hub"), d.isBehindUsb2Hub() ? QJsonValue(d.strUsb2HubPath) : QJsonValue());
        devices.append(o);
    }
    facts.insert(QStringLiteral("devices"), devices);
    QJsonArray shared;
    for (const CUsbLinkSharedController &c : pInfo->sharedControllers)
        shared.append(QJsonObject {{QStringLiteral("controller"), c.strController},
            {QStringLiteral("portPaths"), QJsonArray::fromStringList(c.listPortPaths)}});
    facts.insert(QStringLiteral("sharedControllers"), shared);
    facts.insert(QStringLiteral("unreadableDevices"), pInfo->nUnreadable);
    return facts;
}
