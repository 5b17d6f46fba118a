#include "usbtreejson.h"

#include "cusbids.h"
#include "cusbtreedecoder.h"
#include "probekit.h"
#include "usbnodefacts.h"

#include <QCoreApplication>
#include <QJsonArray>

namespace VxUsbProbe {

namespace {

constexpr int kMaxDepth = 16;
constexpr int kMaxNodes = 20000;

const char *const kStatusNames[] = {"NoDeviceConnected", "DeviceConnected", "DeviceFailedEnumeration",
    "DeviceGeneralFailure", "DeviceCausedOvercurrent", "DeviceNotEnoughPower", "DeviceNotEnoughBandwidth",
    "DeviceHubNestedTooDeeply", "DeviceInLegacyHub", "DeviceEnumerating", "DeviceReset"};

QJsonValue textOrNull(const QString &s)
{
    return s.isEmpty() ? QJsonValue() : QJsonValue(s);
}

QJsonValue speedValue(quint32 uKbps)
{
    return uKbps ? QJsonValue(uKbps / 1000.0) : QJsonValue();
}

QString versionText(quint16 uBcd)
{
    return QStringLiteral("%1.%2%3")
        .arg((uBcd >> 8) & 0xFF, 0, 16)
        .arg((uBcd >> 4) & 0xF, 0, 16)
        .arg(uBcd & 0xF, 0, 16);
}

QString statusName(quint32 uStatus)
{
    return uStatus < sizeof kStatusNames / sizeof kStatusNames[0] ? QString::fromLatin1(kStatusNames[uStatus])
                                                                  : QStringLiteral("Unknown");
}

// The walk shared by the JSON and the text: one visitor per node kind.
class CTreeWalk
{
public:
    virtual ~CTreeWalk() = default;
    void run(const UsbRootItem *pRoot)
    {
        if (!pRoot)
            return;
        for (const UsbListNode *pCell = pRoot->pChildren; pCell && m_nBudget > 0; pCell = pCell->pNext, --m_nBudget) {
            const UsbTreeItem *pItem = pCell->pItem;
            if (!pItem || !pItem->pInfo || *static_cast<const qint32 *>(pItem->pInfo) != UsbNodeController)
                continue;
            controller(pItem, static_cast<const UsbControllerInfo *>(pItem->pInfo));
        }
    }

protected:
    virtual void controller(const UsbTreeItem *pItem, const UsbControllerInfo *pInfo) = 0;
    int m_nBudget = kMaxNodes;
};

class CJsonWalk : public CTreeWalk
{
public:
    QJsonArray controllers;

protected:
    void controller(const UsbTreeItem *pItem, const UsbControllerInfo *pInfo) override
    {
        QJsonObject c;
        QString strName = CUsbTreeDecoder::wideText(pInfo->pDeviceDesc);
        if (strName.isEmpty())
            strName = CUsbTreeDecoder::wideText(pItem->pName);
        c.insert(QStringLiteral("name"), strName);
        c.insert(QStringLiteral("driver"), textOrNull(CUsbTreeDecoder::wideText(pInfo->pDriverName)));
        c.insert(QStringLiteral("pciAddress"), textOrNull(CUsbTreeDecoder::wideText(pInfo->pPciAddress)));
        c.insert(QStringLiteral("driverKey"), CUsbTreeDecoder::wideText(pInfo->pDriverKey));
        c.insert(QStringLiteral("vendorId"), VxUsbNode::idText(quint16(pInfo->VendorID)));
        c.insert(QStringLiteral("deviceId"), VxUsbNode::idText(quint16(pInfo->DeviceID)));
        QJsonArray hubs;
        for (const UsbListNode *pCell = pItem->pChildren; pCell && m_nBudget > 0; pCell = pCell->pNext, --m_nBudget) {
            const UsbTreeItem *pHubItem = pCell->pItem;
            if (!pHubItem || !pHubItem->pInfo || *static_cast<const qint32 *>(pHubItem->pInfo) != UsbNodeRootHub)
                continue;
            const auto *pHub = static_cast<const UsbHubNodeInfo *>(pHubItem->pInfo);
            QJsonObject h;
            h.insert(QStringLiteral("name"), CUsbTreeDecoder::wideText(pHubItem->pName));
            h.insert(QStringLiteral("bus"), VxUsbNode::portPath(pHub->pLinkInfo));
            h.insert(QStringLiteral("speedMbps"), speedValue(pHub->pLinkInfo ? pHub->pLinkInfo->SpeedKbps : 0));
            h.insert(QStringLiteral("portCount"),
                (pHub->pHubInfo && (pHub->uHubFieldsKnown & UsbHubFieldPorts))
                    ? QJsonValue(int(pHub->pHubInfo->HubDescriptor.bNumberOfPorts))
                    : QJsonValue());
            h.insert(QStringLiteral("ports"), ports(pHubItem->pChildren, 1));
            hubs.append(h);
        }
        c.insert(QStringLiteral("rootHubs"), hubs);
        controllers.append(c);
    }

private:
    QJsonArray ports(const UsbListNode *pList, int nDepth)
    {
        QJsonArray out;
        if (nDepth > kMaxDepth)
            return out;
        for (const UsbListNode *pCell = pList; pCell && m_nBudget > 0; pCell = pCell->pNext, --m_nBudget) {
            const UsbTreeItem *pItem = pCell->pItem;
            if (!pItem || !pItem->pInfo)
                continue;
            const VxUsbNode::CNodeFacts f = VxUsbNode::nodeFacts(pItem->pInfo);
            const UsbPortConnectionInfo *pConn = CUsbTreeDecoder::connectionInfo(pItem->pInfo);
            if (!pConn)
                continue;
            QJsonObject port;
            port.insert(QStringLiteral("port"), int(pConn->ConnectionIndex));
            port.insert(QStringLiteral("status"), statusName(pConn->ConnectionStatus));
            if (f.bValid)
                port.insert(QStringLiteral("device"), device(pItem, f, nDepth));
            out.append(port);
        }
        return out;
    }

    QJsonObject device(const UsbTreeItem *pItem, const VxUsbNode::CNodeFacts &f, int nDepth)
    {
        const UsbDeviceDescriptor &dd = f.pConnection->DeviceDescriptor;
        QJsonObject d;
        d.insert(QStringLiteral("portPath"), VxUsbNode::portPath(f.pLink));
        d.insert(QStringLiteral("name"), VxUsbNode::deviceName(f));
        d.insert(QStringLiteral("descriptorRead"), f.bDescriptorRead);
        d.insert(QStringLiteral("isHub"), f.bHub);
        d.insert(QStringLiteral("speedMbps"), speedValue(VxUsbNode::speedKbps(f.pConnection, f.pLink)));
        d.insert(QStringLiteral("configurationValue"), int(f.pConnection->CurrentConfigurationValue));
        d.insert(QStringLiteral("address"), int(f.pConnection->DeviceAddress));
        if (f.bDescriptorRead) {
            d.insert(QStringLiteral("vendorId"), VxUsbNode::idText(dd.idVendor));
            d.insert(QStringLiteral("productId"), VxUsbNode::idText(dd.idProduct));
            d.insert(QStringLiteral("vendorName"), textOrNull(CUsbIds::vendorName(dd.idVendor)));
            d.insert(QStringLiteral("productName"), textOrNull(CUsbIds::productName(dd.idVendor, dd.idProduct)));
            d.insert(QStringLiteral("manufacturer"), textOrNull(VxUsbNode::stringText(f.pStrings, dd.iManufacturer)));
            d.insert(QStringLiteral("product"), textOrNull(VxUsbNode::stringText(f.pStrings, dd.iProduct)));
            d.insert(QStringLiteral("serialNumber"), textOrNull(VxUsbNode::stringText(f.pStrings, dd.iSerialNumber)));
            d.insert(QStringLiteral("usbVersion"), versionText(dd.bcdUSB));
            d.insert(QStringLiteral("deviceClass"), int(dd.bDeviceClass));
            d.insert(QStringLiteral("deviceSubClass"), int(dd.bDeviceSubClass));
            d.insert(QStringLiteral("deviceProtocol"), int(dd.bDeviceProtocol));
        }
        QJsonArray interfaces;
        for (const VxUsbNode::CInterface &i : VxUsbNode::interfaces(f.pConfig))
            interfaces.append(QJsonObject {{QStringLiteral("number"), i.nNumber},
                {QStringLiteral("alternateSetting"), i.nAlternate}, {QStringLiteral("class"), i.nClass},
                {QStringLiteral("subClass"), i.nSubClass}, {QStringLiteral("protocol"), i.nProtocol}});
        d.insert(QStringLiteral("interfaces"), interfaces);
        if (f.bHub)
            d.insert(QStringLiteral("ports"), ports(pItem->pChildren, nDepth + 1));
        return d;
    }
};

class CTextWalk : public CTreeWalk
{
public:
    QStringList lines;

protected:
    void controller(const UsbTreeItem *pItem, const UsbControllerInfo *pInfo) override
    {
        QString strName = CUsbTreeDecoder::wideText(pInfo->pDeviceDesc);
        if (strName.isEmpty())
            strName = CUsbTreeDecoder::wideText(pItem->pName);
        QStringList listWhere;
        for (const QString &s :
            {CUsbTreeDecoder::wideText(pInfo->pPciAddress), CUsbTreeDecoder::wideText(pInfo->pDriverName)})
            if (!s.isEmpty())
                listWhere << s;
        lines << QCoreApplication::translate("VxUsbTree", "Controller: %1").arg(strName)
                + (listWhere.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(listWhere.join(QStringLiteral(", "))));
        for (const UsbListNode *pCell = pItem->pChildren; pCell && m_nBudget > 0; pCell = pCell->pNext, --m_nBudget) {
            const UsbTreeItem *pHubItem = pCell->pItem;
            if (!pHubItem || !pHubItem->pInfo || *static_cast<const qint32 *>(pHubItem->pInfo) != UsbNodeRootHub)
                continue;
            const auto *pHub = static_cast<const UsbHubNodeInfo *>(pHubItem->pInfo);
            QString strLine = QStringLiteral("/:  ")
                + QCoreApplication::translate("VxUsbTree", "Bus %1: %2")
                      .arg(VxUsbNode::portPath(pHub->pLinkInfo), CUsbTreeDecoder::wideText(pHubItem->pName));
            appendSpeed(strLine, pHub->pLinkInfo ? pHub->pLinkInfo->SpeedKbps : 0);
            lines << QStringLiteral("    ") + strLine;
            ports(pHubItem->pChildren, 1);
        }
    }

private:
    static void appendSpeed(QString &strLine, quint32 uKbps)
    {
        strLine += QStringLiteral(", ")
            + (uKbps ? VxUsbNode::speedMbpsText(uKbps) + QLatin1Char('M')
                     : QCoreApplication::translate("VxUsbTree", "unknown speed"));
    }

    void ports(const UsbListNode *pList, int nDepth)
    {
        if (nDepth > kMaxDepth)
            return;
        const QString strIndent(4 + 4 * nDepth, QLatin1Char(' '));
        for (const UsbListNode *pCell = pList; pCell && m_nBudget > 0; pCell = pCell->pNext, --m_nBudget) {
            const UsbTreeItem *pItem = pCell->pItem;
            const VxUsbNode::CNodeFacts f = VxUsbNode::nodeFacts(pItem ? pItem->pInfo : nullptr);
            if (!f.bValid)
                continue;
            const UsbDeviceDescriptor &dd = f.pConnection->DeviceDescriptor;
            QString strLine = QStringLiteral("|__ ")
                + QCoreApplication::translate("VxUsbTree", "Port %1 (%2): %3")
                      .arg(QString::number(f.pConnection->ConnectionIndex), VxUsbNode::portPath(f.pLink),
                          VxUsbNode::deviceName(f));
            if (f.bDescriptorRead)
                strLine += QStringLiteral(" [%1:%2], %3")
                               .arg(dd.idVendor, 4, 16, QLatin1Char('0'))
                               .arg(dd.idProduct, 4, 16, QLatin1Char('0'))
                               .arg(VxUsbNode::bcdText(dd.bcdUSB));
            appendSpeed(strLine, VxUsbNode::speedKbps(f.pConnection, f.pLink));
            if (f.bHub)
                strLine += QStringLiteral(", ") + QCoreApplication::translate("VxUsbTree", "hub");
            lines << strIndent + strLine;
            for (const VxUsbNode::CInterface &i : VxUsbNode::interfaces(f.pConfig))
                lines << strIndent + QStringLiteral("    ")
                        + QCoreApplication::translate(
                            "VxUsbTree", "Interface %1.%2: class %3, subclass %4, protocol %5")
                              .arg(i.nNumber)
                              .arg(i.nAlternate)
                              .arg(QStringLiteral("%1").arg(i.nClass, 2, 16, QLatin1Char('0')),
                                  QStringLiteral("%1").arg(i.nSubClass, 2, 16, QLatin1Char('0')),
                                  QStringLiteral("%1").arg(i.nProtocol, 2, 16, QLatin1Char('0')));
            if (f.bHub)
                ports(pItem->pChildren, nDepth + 1);
        }
    }
};

} // namespace

QJsonObject treeJson(const UsbRootItem *pRoot)
{
    CJsonWalk walk;
    walk.run(pRoot);
    return QJsonObject {
        {QStringLiteral("schemaVersion"), kUsbTreeSchemaVersion}, {QStringLiteral("controllers"), walk.controllers}};
}

QStringList treeText(const UsbRootItem *pRoot)
{
    CTextWalk walk;
    walk.run(pRoot);
    return walk.lines;
}

} // namespace VxUsbProbe
