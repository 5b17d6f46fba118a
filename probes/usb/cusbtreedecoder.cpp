#include "cusbtreedecoder.h"

#include "cusbdescriptordecoder.h"
#include "cusblinesink.h"

namespace {

struct CDebugPortRow
{
    quint32 uVendorId;
    quint32 uDeviceId;
    int nDebugPort;
};

// Host controllers with a known debug port; the table ends at vendor 0.
const CDebugPortRow kDebugPorts[] = {
    {0x8086, 0x24CD, 1}, {0x8086, 0x24DD, 1}, {0x8086, 0x265C, 1},
    {0x8086, 0x27CC, 1}, {0x10DE, 0x00D8, 1}, {0, 0, 0},
};

constexpr int kMaxDepth = 16;
constexpr int kMaxNodes = 20000;

QString yesNo(quint32 uFlags, int nBit)
{
    return (uFlags >> nBit) & 1 ? QStringLiteral("Yes") : QStringLiteral("No");
}

QString hexNoPad(quint32 uValue)
{
    return QStringLiteral("0x") + QString::number(uValue, 16).toUpper();
}

} // namespace

CUsbTreeDecoder::CUsbTreeDecoder(CUsbLineSink &sink)
    : m_sink(sink)
{
}

QString CUsbTreeDecoder::wideText(const UsbWChar *pText)
{
    QString s;
    if (!pText)
        return s;
    for (int i = 0; i < 4096 && pText[i]; ++i)
        s += QChar(ushort(pText[i]));
    return s;
}

QString CUsbTreeDecoder::hex6(quint32 uValue)
{
    return QStringLiteral("0x") + QStringLiteral("%1").arg(uValue, 6, 16, QLatin1Char('0')).toUpper();
}

const UsbPortConnectionInfo *CUsbTreeDecoder::connectionInfo(const void *pInfo)
{
    if (!pInfo)
        return nullptr;
    const int nKind = *static_cast<const qint32 *>(pInfo);
    if (nKind == UsbNodeExternalHub)
        return static_cast<const UsbHubNodeInfo *>(pInfo)->pConnectionInfo;
    if (nKind == UsbNodeDevice)
        return static_cast<const UsbDeviceNodeInfo *>(pInfo)->pConnectionInfo;
    return nullptr;
}

bool CUsbTreeDecoder::isListed(const UsbTreeItem *pItem)
{
    if (!pItem || !pItem->pInfo)
        return false;
    const UsbPortConnectionInfo *pConnection = connectionInfo(pItem->pInfo);
    return !pConnection || pConnection->ConnectionStatus != UsbNoDeviceConnected;
}

void CUsbTreeDecoder::printController(const UsbControllerInfo *pInfo)
{
    if (!pInfo)
        return;
    m_sink.addLine(QStringLiteral("DriverKey:"), wideText(pInfo->pDriverKey));
    m_sink.addLine(QStringLiteral("VendorID:"), hexNoPad(pInfo->VendorID));
    m_sink.addLine(QStringLiteral("DeviceID:"), hexNoPad(pInfo->DeviceID));
    m_sink.addLine(QStringLiteral("SubSysID:"), hexNoPad(pInfo->SubSysID));
    m_sink.addLine(QStringLiteral("Revision:"), hexNoPad(pInfo->Revision));
    for (const CDebugPortRow *pRow = kDebugPorts; pRow->uVendorId != 0; ++pRow)
        if (pRow->uVendorId == pInfo->VendorID && pRow->uDeviceId == pInfo->DeviceID)
            m_sink.addLine(QStringLiteral("DebugPort:"), QString::number(pRow->nDebugPort));
}

void CUsbTreeDecoder::printHub(const UsbHubNodeInfo *pInfo)
{
    if (!pInfo)
        return;
    const bool bRoot = pInfo->Kind == UsbNodeRootHub;
    m_sink.addLine(bRoot ? QStringLiteral("Root Hub:") : QStringLiteral("External Hub:"), wideText(pInfo->pHubName));
    if (const UsbHubInformationBlock *pBlock = pInfo->pHubInfo) {
        const quint32 uKnown = pInfo->uHubFieldsKnown;
        const QString unavailable = QStringLiteral("UNAVAILABLE");
        const UsbHubDescriptor &hd = pBlock->HubDescriptor;
        const quint32 uChars = hd.wHubCharacteristics;
        m_sink.addLine(QStringLiteral("Hub Power:"),
                       !(uKnown & UsbHubFieldBusPowered) ? unavailable
                       : pBlock->HubIsBusPowered         ? QStringLiteral("Bus Power")
                                                         : QStringLiteral("Self Power"));
        m_sink.addLine(QStringLiteral("Number of Ports:"),
                       (uKnown & UsbHubFieldPorts) ? QString::number(hd.bNumberOfPorts) : unavailable);
        const bool bChars = uKnown & UsbHubFieldCharacteristics;
        static const char *const kSwitching[] = {"Ganged", "Individual", "None", "None"};
        m_sink.addLine(QStringLiteral("Power switching:"), bChars ? QString::fromLatin1(kSwitching[uChars & 3]) : unavailable);
        m_sink.addLine(QStringLiteral("Compound device:"),
                       !bChars ? unavailable : (uChars & 4) ? QStringLiteral("Yes") : QStringLiteral("No"));
        const quint32 uOver = uChars & 0x18;
        m_sink.addLine(QStringLiteral("Over-current Protection:"),
                       !bChars          ? unavailable
                       : uOver == 0     ? QStringLiteral("Global")
                       : uOver == 8     ? QStringLiteral("Individual")
                                        : QStringLiteral("No Over-current Protection (Bus Power Only)"));
        if (const UsbHubCapabilitiesEx *pEx = pInfo->pHubCapsEx) {
            const quint32 f = pEx->CapabilityFlags;
            m_sink.addLine(QStringLiteral("Extended Hub Capability Flags:"), hex6(f));
            m_sink.addLine(QStringLiteral("High speed Capable:"), yesNo(f, 0));
            m_sink.addLine(QStringLiteral("High speed:"), yesNo(f, 1));
            m_sink.addLine(QStringLiteral("Mulit-transaction Capable:"), yesNo(f, 2));
            m_sink.addLine(QStringLiteral("Mulit-transaction ON:"), yesNo(f, 3));
            m_sink.addLine(QStringLiteral("Root hub:"), yesNo(f, 4));
            m_sink.addLine(QStringLiteral("Armed for wake on connect:"), yesNo(f, 5));
            m_sink.addLine(QStringLiteral("Reserved (26 bits):"), hex6(f >> 7));
        } else {
            m_sink.addLine(QStringLiteral("Extended Hub Capabilities UNAVAILABLE"), QString());
            if (!pInfo->pHubCaps)
                m_sink.addLine(QStringLiteral("Hub Capabilities UNAVAILABLE"), QString());
            else
                m_sink.addLine(QStringLiteral("Hub Capabilities:"),
                               hex6(pInfo->pHubCaps->CapabilityFlags & 1)
                                   + ((pInfo->pHubCaps->CapabilityFlags & 1) ? QStringLiteral("(High speed)")
                                                                             : QStringLiteral("(Not high speed)")));
        }
    }
    if (!bRoot)
        printDevice(pInfo->pConnectionInfo, pInfo->pConfigDesc, pInfo->pStringDescs);
}

void CUsbTreeDecoder::printDevice(const UsbPortConnectionInfo *pConnection, const UsbDescriptorRequest *pConfig,
                                  const UsbStringDescriptorNode *pStrings)
{
    CUsbDescriptorDecoder decoder(m_sink, pStrings);
    decoder.printConnection(pConnection);
    if (pConfig)
        decoder.walkConfiguration(pConfig->Data, pConfig->SetupPacket.wLength);
}

void CUsbTreeDecoder::printNode(const void *pInfo)
{
    if (!pInfo)
        return;
    switch (*static_cast<const qint32 *>(pInfo)) {
    case UsbNodeController:
        printController(static_cast<const UsbControllerInfo *>(pInfo));
        break;
    case UsbNodeRootHub:
    case UsbNodeExternalHub:
        printHub(static_cast<const UsbHubNodeInfo *>(pInfo));
        break;
    case UsbNodeDevice: {
        const auto *pDevice = static_cast<const UsbDeviceNodeInfo *>(pInfo);
        printDevice(pDevice->pConnectionInfo, pDevice->pConfigDesc, pDevice->pStringDescs);
        break;
    }
    default:
        break;
    }
}

void CUsbTreeDecoder::printItems(const UsbListNode *pList, int nDepth, int &nBudget)
{
    if (nDepth > kMaxDepth)
        return;
    for (const UsbListNode *pCell = pList; pCell && nBudget > 0; pCell = pCell->pNext, --nBudget) {
        const UsbTreeItem *pItem = pCell->pItem;
        if (!isListed(pItem))
            continue;
        m_sink.addHeading(wideText(pItem->pName));
        printNode(pItem->pInfo);
        printItems(pItem->pChildren, nDepth + 1, nBudget);
    }
}

void CUsbTreeDecoder::printTree(const UsbRootItem *pRoot)
{
    if (!pRoot)
        return;
    int nBudget = kMaxNodes;
    printItems(pRoot->pChildren, 0, nBudget);
}
