#include "usbnodefacts.h"

#include "cusbids.h"
#include "cusbtreedecoder.h"

namespace VxUsbNode {

CNodeFacts nodeFacts(const void *pInfo)
{
    CNodeFacts f;
    if (!pInfo)
        return f;
    const qint32 nKind = *static_cast<const qint32 *>(pInfo);
    if (nKind == UsbNodeExternalHub) {
        const auto *pHub = static_cast<const UsbHubNodeInfo *>(pInfo);
        f.bHub = true;
        f.pConnection = pHub->pConnectionInfo;
        f.pConfig = pHub->pConfigDesc;
        f.pStrings = pHub->pStringDescs;
        f.pLink = pHub->pLinkInfo;
    } else if (nKind == UsbNodeDevice) {
        const auto *pDevice = static_cast<const UsbDeviceNodeInfo *>(pInfo);
        f.pConnection = pDevice->pConnectionInfo;
        f.pConfig = pDevice->pConfigDesc;
        f.pStrings = pDevice->pStringDescs;
        f.pLink = pDevice->pLinkInfo;
    }
    f.bValid = f.pConnection && f.pConnection->ConnectionStatus != UsbNoDeviceConnected;
    f.bDescriptorRead = f.bValid && f.pConnection->DeviceDescriptor.bLength == 18
        && f.pConnection->DeviceDescriptor.bDescriptorType == 1;
    return f;
}

const UsbPortLinkInfo *rootHubLink(const void *pInfo)
{
    if (!pInfo || *static_cast<const qint32 *>(pInfo) != UsbNodeRootHub)
        return nullptr;
    return static_cast<const UsbHubNodeInfo *>(pInfo)->pLinkInfo;
}

QVector<CInterface> interfaces(const UsbDescriptorRequest *pConfig)
{
    QVector<CInterface> vec;
    if (!pConfig)
        return vec;
    const quint8 *p = pConfig->Data;
    const size_t n = pConfig->SetupPacket.wLength;
    size_t at = 0;
    while (at + 2 <= n) {
        const quint8 len = p[at];
        if (len < 2 || at + len > n)
            break;
        if (p[at + 1] == 4 && len >= 9) {
            CInterface i;
            i.nNumber = p[at + 2];
            i.nAlternate = p[at + 3];
            i.nClass = p[at + 5];
            i.nSubClass = p[at + 6];
            i.nProtocol = p[at + 7];
            vec << i;
        }
        at += len;
    }
    return vec;
}

bool isUsb3Vision(const QVector<CInterface> &vecInterfaces)
{
    for (const CInterface &i : vecInterfaces)
        if (i.nClass == 0xEF && i.nSubClass == 0x05)
            return true;
    return false;
}

QString stringText(const UsbStringDescriptorNode *pStrings, int nIndex)
{
    if (nIndex == 0)
        return QString();
    int nSeen = 0;
    for (const UsbStringDescriptorNode *s = pStrings; s && nSeen < 256; s = s->pNext, ++nSeen) {
        if (int(s->DescriptorIndex) != nIndex || !s->pDescriptor || s->Length < 2)
            continue;
        const quint32 nBytes = qMin<quint32>(s->Length, s->pDescriptor[0]);
        QString text;
        for (quint32 i = 2; i + 1 < nBytes; i += 2)
            text += QChar(ushort(s->pDescriptor[i] | (s->pDescriptor[i + 1] << 8)));
        return text.trimmed();
    }
    return QString();
}

quint32 speedKbps(const UsbPortConnectionInfo *pConnection, const UsbPortLinkInfo *pLink)
{
    if (pLink && pLink->SpeedKbps)
        return pLink->SpeedKbps;
    if (!pConnection)
        return 0;
    switch (pConnection->Speed) {
    case UsbSpeedLow:
        return 1500;
    case UsbSpeedFull:
        return 12000;
    case UsbSpeedHigh:
        return 480000;
    case UsbSpeedSuper:
        return 5000000;
    default:
        return 0;
    }
}

QString speedMbpsText(quint32 uKbps)
{
    if (uKbps == 0)
        return QString();
    if (uKbps % 1000 == 0)
        return QString::number(uKbps / 1000);
    return QString::number(uKbps / 1000.0, 'f', 1);
}

QString bcdText(quint16 uBcd)
{
    return QStringLiteral("USB %1.%2%3")
        .arg((uBcd >> 8) & 0xFF, 0, 16)
        .arg((uBcd >> 4) & 0xF, 0, 16)
        .arg(uBcd & 0xF, 0, 16);
}

QString portPath(const UsbPortLinkInfo *pLink)
{
    return pLink ? CUsbTreeDecoder::wideText(pLink->pPortPath) : QString();
}

QString idText(quint16 uId)
{
    return QStringLiteral("0x%1").arg(uId, 4, 16, QLatin1Char('0'));
}

QString deviceName(const CNodeFacts &facts)
{
    if (!facts.bValid)
        return QString();
    const UsbDeviceDescriptor &dd = facts.pConnection->DeviceDescriptor;
    QString strVendor = facts.bDescriptorRead ? CUsbIds::vendorName(dd.idVendor) : QString();
    if (strVendor.isEmpty() && facts.bDescriptorRead)
        strVendor = stringText(facts.pStrings, dd.iManufacturer);
    QString strProduct = facts.bDescriptorRead ? CUsbIds::productName(dd.idVendor, dd.idProduct) : QString();
    if (strProduct.isEmpty() && facts.bDescriptorRead)
        strProduct = stringText(facts.pStrings, dd.iProduct);
    const QString strName = QStringList({strVendor, strProduct}).join(QLatin1Char(' ')).trimmed();
    return strName.isEmpty() ? QStringLiteral("USB device") : strName;
}

} // namespace VxUsbNode
