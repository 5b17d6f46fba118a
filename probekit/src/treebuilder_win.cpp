// The USB tree on Windows: host controllers from SetupAPI (USB host
// controller device interface), then the hub driver's I/O controls for the
// root hub and every port: node information, hub capabilities, connection
// information, configuration and string descriptors.
#include "treebuilder.h"
#include "portlink.h"
#include "usbstrings.h"

#include <windows.h>
#include <initguid.h>
#include <setupapi.h>
#include <usbioctl.h>
#include <usbiodef.h>

#include <cstddef>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

// Our records mirror the hub driver's structures byte for byte.
static_assert(offsetof(USB_NODE_CONNECTION_INFORMATION_EX, ConnectionStatus) == offsetof(UsbPortConnectionInfo, ConnectionStatus),
              "connection information layout");
static_assert(offsetof(USB_NODE_CONNECTION_INFORMATION_EX, PipeList) == offsetof(UsbPortConnectionInfo, PipeList),
              "pipe list offset");
static_assert(sizeof(USB_PIPE_INFO) == sizeof(UsbPipeInfo), "pipe information size");
static_assert(sizeof(USB_NODE_INFORMATION) >= sizeof(UsbHubInformationBlock), "hub information block");
static_assert(offsetof(USB_NODE_INFORMATION, u) == offsetof(UsbHubInformationBlock, HubDescriptor), "hub descriptor offset");
static_assert(sizeof(USB_HUB_DESCRIPTOR) == sizeof(UsbHubDescriptor), "hub descriptor size");
static_assert(offsetof(USB_DESCRIPTOR_REQUEST, Data) == offsetof(UsbDescriptorRequest, Data), "request header");

namespace probekit {

namespace {

// The V2 connection information of Windows 8 and later; the SDK headers
// declare it only for builds aimed at Windows 8, this program runs from
// Windows 7 on (where the hub driver refuses the request).
struct CConnectionInfoV2
{
    ULONG ConnectionIndex;
    ULONG Length;
    ULONG SupportedUsbProtocols; // USB_PROTOCOLS
    ULONG Flags;                 // USB_NODE_CONNECTION_INFORMATION_EX_V2_FLAGS
};
static_assert(sizeof(CConnectionInfoV2) == 16, "connection information V2 is four words");
constexpr DWORD kIoctlConnectionInfoV2 = CTL_CODE(FILE_DEVICE_USB, 279, METHOD_BUFFERED, FILE_ANY_ACCESS);

class CHandle
{
public:
    explicit CHandle(HANDLE h) : m_h(h) {}
    ~CHandle()
    {
        if (valid())
            CloseHandle(m_h);
    }
    CHandle(const CHandle &) = delete;
    CHandle &operator=(const CHandle &) = delete;
    bool valid() const { return m_h && m_h != INVALID_HANDLE_VALUE; }
    HANDLE get() const { return m_h; }

private:
    HANDLE m_h;
};

class CDevInfo
{
public:
    explicit CDevInfo(HDEVINFO h) : m_h(h) {}
    ~CDevInfo()
    {
        if (m_h != INVALID_HANDLE_VALUE)
            SetupDiDestroyDeviceInfoList(m_h);
    }
    CDevInfo(const CDevInfo &) = delete;
    CDevInfo &operator=(const CDevInfo &) = delete;
    HDEVINFO get() const { return m_h; }

private:
    HDEVINFO m_h;
};

std::string utf8(const wchar_t *pText, int nLength = -1)
{
    if (!pText)
        return std::string();
    const int n = WideCharToMultiByte(CP_UTF8, 0, pText, nLength, nullptr, 0, nullptr, nullptr);
    if (n <= 0)
        return std::string();
    std::string s(size_t(n), '\0');
    WideCharToMultiByte(CP_UTF8, 0, pText, nLength, &s[0], n, nullptr, nullptr);
    if (nLength < 0 && !s.empty() && s.back() == '\0')
        s.pop_back();
    return s;
}

bool ioctl(HANDLE h, DWORD uCode, void *pBuffer, DWORD nSize, DWORD *pReturned = nullptr)
{
    DWORD nReturned = 0;
    const BOOL ok = DeviceIoControl(h, uCode, pBuffer, nSize, pBuffer, nSize, &nReturned, nullptr);
    if (pReturned)
        *pReturned = nReturned;
    return ok != FALSE;
}

HANDLE openHub(const std::wstring &strName)
{
    const std::wstring path = L"\\\\.\\" + strName;
    return CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
}

std::wstring rootHubName(HANDLE hController)
{
    USB_ROOT_HUB_NAME head{};
    if (!ioctl(hController, IOCTL_USB_GET_ROOT_HUB_NAME, &head, sizeof head) || head.ActualLength <= sizeof head)
        return std::wstring();
    std::vector<BYTE> buffer(head.ActualLength);
    if (!ioctl(hController, IOCTL_USB_GET_ROOT_HUB_NAME, buffer.data(), DWORD(buffer.size())))
        return std::wstring();
    const auto *pName = reinterpret_cast<USB_ROOT_HUB_NAME *>(buffer.data());
    return std::wstring(pName->RootHubName, wcsnlen(pName->RootHubName, (buffer.size() - sizeof(ULONG)) / sizeof(WCHAR)));
}

std::wstring externalHubName(HANDLE hHub, ULONG nPort)
{
    USB_NODE_CONNECTION_NAME head{};
    head.ConnectionIndex = nPort;
    if (!ioctl(hHub, IOCTL_USB_GET_NODE_CONNECTION_NAME, &head, sizeof head) || head.ActualLength <= sizeof head)
        return std::wstring();
    std::vector<BYTE> buffer(head.ActualLength);
    auto *pName = reinterpret_cast<USB_NODE_CONNECTION_NAME *>(buffer.data());
    pName->ConnectionIndex = nPort;
    if (!ioctl(hHub, IOCTL_USB_GET_NODE_CONNECTION_NAME, buffer.data(), DWORD(buffer.size())))
        return std::wstring();
    return std::wstring(pName->NodeName, wcsnlen(pName->NodeName, (buffer.size() - 2 * sizeof(ULONG)) / sizeof(WCHAR)));
}

std::wstring deviceProperty(HDEVINFO hInfo, SP_DEVINFO_DATA &data, DWORD uProperty)
{
    WCHAR buffer[1024] = {};
    if (!SetupDiGetDeviceRegistryPropertyW(hInfo, &data, uProperty, nullptr, reinterpret_cast<BYTE *>(buffer),
                                           sizeof buffer - sizeof(WCHAR), nullptr))
        return std::wstring();
    return buffer;
}

uint32_t hexAfter(const std::wstring &strText, const wchar_t *pTag)
{
    const size_t at = strText.find(pTag);
    if (at == std::wstring::npos)
        return 0;
    return uint32_t(wcstoul(strText.c_str() + at + wcslen(pTag), nullptr, 16));
}

constexpr USHORT kFirstConfigBytes = 4096;

class CWinTreeBuilder
{
public:
    explicit CWinTreeBuilder(Arena &arena) : m_arena(arena) {}
    void build(UsbRootItem *pRoot);

private:
    UsbHubNodeInfo *hubInfo(HANDLE hHub, const std::wstring &strName, int nKind);
    UsbDescriptorRequest *configuration(HANDLE hHub, ULONG nPort);
    UsbStringDescriptorNode *strings(HANDLE hHub, ULONG nPort, const UsbPortConnectionInfo &info,
                                     const UsbDescriptorRequest *pConfig);
    UsbPortLinkInfo *linkInfo(HANDLE hHub, ULONG nPort, const UsbPortConnectionInfo &connection,
                              const std::string &strPortPath);
    void addPorts(UsbTreeItem *pHubItem, HANDLE hHub, unsigned nPorts, int nDepth, const std::string &strHubPath);

    Arena &m_arena;
    unsigned m_nNodes = 0;
    unsigned m_nControllers = 0; // numbered from 1: the "bus" of the port paths
};

UsbHubNodeInfo *CWinTreeBuilder::hubInfo(HANDLE hHub, const std::wstring &strName, int nKind)
{
    auto *pInfo = m_arena.make<UsbHubNodeInfo>();
    if (!pInfo)
        return nullptr;
    pInfo->Kind = nKind;
    pInfo->pHubName = m_arena.wide(utf8(strName.c_str()));
    USB_NODE_INFORMATION node{};
    if (ioctl(hHub, IOCTL_USB_GET_NODE_INFORMATION, &node, sizeof node)) {
        if (auto *pBlock = m_arena.make<UsbHubInformationBlock>()) {
            std::memcpy(pBlock, &node, sizeof *pBlock < sizeof node ? sizeof *pBlock : sizeof node);
            pInfo->pHubInfo = pBlock;
            pInfo->uHubFieldsKnown = USB_HUB_FIELDS_ALL;
        }
    }
    USB_HUB_CAPABILITIES_EX capsEx{};
    if (ioctl(hHub, IOCTL_USB_GET_HUB_CAPABILITIES_EX, &capsEx, sizeof capsEx))
        if ((pInfo->pHubCapsEx = m_arena.make<UsbHubCapabilitiesEx>()))
            std::memcpy(&pInfo->pHubCapsEx->CapabilityFlags, &capsEx, sizeof(uint32_t));
    USB_HUB_CAPABILITIES caps{};
    if (ioctl(hHub, IOCTL_USB_GET_HUB_CAPABILITIES, &caps, sizeof caps))
        if ((pInfo->pHubCaps = m_arena.make<UsbHubCapabilities>()))
            std::memcpy(&pInfo->pHubCaps->CapabilityFlags, &caps, sizeof(uint32_t));
    return pInfo;
}

// One GET_DESCRIPTOR request to the device on a hub port: the 12-byte
// request header followed by at most nLength descriptor bytes; false when
// the hub driver returns nothing beyond the header.
bool requestDescriptor(HANDLE hHub, ULONG nPort, USHORT uValue, USHORT uIndex, USHORT nLength, std::vector<BYTE> &buffer)
{
    buffer.assign(sizeof(USB_DESCRIPTOR_REQUEST) + nLength, 0);
    auto *pReq = reinterpret_cast<USB_DESCRIPTOR_REQUEST *>(buffer.data());
    pReq->ConnectionIndex = nPort;
    pReq->SetupPacket.bmRequest = 0x80;
    pReq->SetupPacket.bRequest = USB_REQUEST_GET_DESCRIPTOR;
    pReq->SetupPacket.wValue = uValue;
    pReq->SetupPacket.wIndex = uIndex;
    pReq->SetupPacket.wLength = nLength;
    DWORD nReturned = 0;
    if (!ioctl(hHub, IOCTL_USB_GET_DESCRIPTOR_FROM_NODE_CONNECTION, buffer.data(), DWORD(buffer.size()), &nReturned)
        || nReturned <= 12)
        return false;
    buffer.resize(nReturned < buffer.size() ? nReturned : buffer.size());
    return true;
}

// The configuration at index 0, the first the device reports (the one the
// Linux reader shows too), with all of its wTotalLength bytes: a device
// whose configuration is longer than the first buffer is asked again.
UsbDescriptorRequest *CWinTreeBuilder::configuration(HANDLE hHub, ULONG nPort)
{
    const USHORT uValue = USHORT(USB_CONFIGURATION_DESCRIPTOR_TYPE << 8);
    std::vector<BYTE> buffer;
    if (!requestDescriptor(hHub, nPort, uValue, 0, kFirstConfigBytes, buffer))
        return nullptr;
    if (buffer.size() >= 12 + 4) {
        const size_t nTotal = size_t(buffer[12 + 2] | (buffer[12 + 3] << 8));
        if (nTotal > buffer.size() - 12 && !requestDescriptor(hHub, nPort, uValue, 0, USHORT(nTotal), buffer))
            return nullptr;
    }
    const size_t nBytes = buffer.size() - 12;
    auto *pOut = static_cast<UsbDescriptorRequest *>(m_arena.alloc(12 + nBytes));
    if (!pOut)
        return nullptr;
    std::memcpy(pOut, buffer.data(), 12 + nBytes);
    pOut->SetupPacket.wLength = uint16_t(nBytes);
    return pOut;
}

UsbStringDescriptorNode *CWinTreeBuilder::strings(HANDLE hHub, ULONG nPort, const UsbPortConnectionInfo &info,
                                                  const UsbDescriptorRequest *pConfig)
{
    std::vector<uint8_t> vecIndexes = {info.DeviceDescriptor.iManufacturer, info.DeviceDescriptor.iProduct,
                                       info.DeviceDescriptor.iSerialNumber};
    if (pConfig) { // iConfiguration and every iInterface
        const uint8_t *p = pConfig->Data;
        const size_t n = pConfig->SetupPacket.wLength;
        for (size_t at = 0; at + 2 <= n && p[at] >= 2 && at + p[at] <= n; at += p[at]) {
            if (p[at + 1] == 2 && p[at] >= 9)
                vecIndexes.push_back(p[at + 6]);
            else if (p[at + 1] == 4 && p[at] >= 9)
                vecIndexes.push_back(p[at + 8]);
        }
    }
    UsbStringDescriptorNode *pHead = nullptr;
    UsbStringDescriptorNode **ppNext = &pHead;
    bool bAny = false;
    for (const uint8_t index : vecIndexes)
        bAny = bAny || index != 0;
    if (!bAny)
        return nullptr;
    // String descriptor 0 lists the languages; the strings are asked for in
    // the first one. A device that lists none has no strings to ask for.
    std::vector<BYTE> buffer;
    if (!requestDescriptor(hHub, nPort, USHORT(USB_STRING_DESCRIPTOR_TYPE << 8), 0, 255, buffer))
        return nullptr;
    const uint16_t uLanguage = firstLanguage(buffer.data() + 12, buffer.size() - 12);
    if (uLanguage == 0)
        return nullptr;
    std::vector<bool> seen(256, false);
    for (const uint8_t index : vecIndexes) {
        if (index == 0 || seen[index])
            continue;
        seen[index] = true;
        if (!requestDescriptor(hHub, nPort, USHORT((USB_STRING_DESCRIPTOR_TYPE << 8) | index), uLanguage, 255, buffer)
            || buffer.size() < 12 + 2)
            continue;
        const size_t nBytes = buffer.size() - 12;
        auto *pNode = m_arena.make<UsbStringDescriptorNode>();
        auto *pBytes = static_cast<uint8_t *>(m_arena.alloc(nBytes));
        if (!pNode || !pBytes)
            break;
        std::memcpy(pBytes, buffer.data() + 12, nBytes);
        pNode->DescriptorIndex = index;
        pNode->LanguageId = uLanguage;
        pNode->Length = uint32_t(nBytes);
        pNode->pDescriptor = pBytes;
        *ppNext = pNode;
        ppNext = &pNode->pNext;
    }
    return pHead;
}

// The port's path, speed and SuperSpeed flags: the flags and the protocols
// the port supports come from the V2 connection information (Windows 8 and
// later); without it the speed code alone tells the speed.
UsbPortLinkInfo *CWinTreeBuilder::linkInfo(HANDLE hHub, ULONG nPort, const UsbPortConnectionInfo &connection,
                                           const std::string &strPortPath)
{
    auto *pLink = m_arena.make<UsbPortLinkInfo>();
    if (!pLink)
        return nullptr;
    pLink->pPortPath = m_arena.wide(strPortPath);
    CConnectionInfoV2 v2{};
    v2.ConnectionIndex = nPort;
    v2.Length = sizeof v2;
    v2.SupportedUsbProtocols = UsbLinkProtocolUsb110 | UsbLinkProtocolUsb200 | UsbLinkProtocolUsb300;
    DWORD nReturned = 0;
    if (ioctl(hHub, kIoctlConnectionInfoV2, &v2, sizeof v2, &nReturned))
        decodeConnectionInfoV2(reinterpret_cast<const uint8_t *>(&v2), nReturned, nPort, *pLink);
    completeLinkFromConnection(connection, *pLink);
    return pLink;
}

void CWinTreeBuilder::addPorts(UsbTreeItem *pHubItem, HANDLE hHub, unsigned nPorts, int nDepth, const std::string &strHubPath)
{
    static const char *const kStatus[] = {"NoDeviceConnected", "DeviceConnected", "DeviceFailedEnumeration",
                                          "DeviceGeneralFailure", "DeviceCausedOvercurrent", "DeviceNotEnoughPower",
                                          "DeviceNotEnoughBandwidth", "DeviceHubNestedTooDeeply", "DeviceInLegacyHub",
                                          "DeviceEnumerating", "DeviceReset"};
    ChildAppender list(m_arena, &pHubItem->pChildren, pHubItem);
    for (ULONG nPort = 1; nPort <= nPorts && nPort <= kMaxPorts; ++nPort) {
        if (++m_nNodes > kMaxNodes)
            return;
        const size_t nBuffer = sizeof(USB_NODE_CONNECTION_INFORMATION_EX) + 32 * sizeof(USB_PIPE_INFO);
        std::vector<BYTE> buffer(nBuffer);
        auto *pConn = reinterpret_cast<USB_NODE_CONNECTION_INFORMATION_EX *>(buffer.data());
        pConn->ConnectionIndex = nPort;
        DWORD nReturned = 0;
        if (!ioctl(hHub, IOCTL_USB_GET_NODE_CONNECTION_INFORMATION_EX, buffer.data(), DWORD(nBuffer), &nReturned)
            || nReturned < 35)
            continue;
        auto *pInfo = static_cast<UsbPortConnectionInfo *>(m_arena.alloc(nReturned + sizeof(UsbPipeInfo)));
        if (!pInfo)
            return;
        std::memcpy(pInfo, buffer.data(), nReturned);
        const uint32_t uStatus = pInfo->ConnectionStatus;
        std::string strName = "[Port" + std::to_string(nPort) + "] "
                              + (uStatus < sizeof kStatus / sizeof kStatus[0] ? kStatus[uStatus] : "Unknown");
        if (uStatus == UsbNoDeviceConnected) {
            auto *pNode = m_arena.make<UsbDeviceNodeInfo>();
            if (!pNode)
                return;
            pNode->Kind = UsbNodeDevice;
            pNode->pConnectionInfo = pInfo;
            list.add(strName, pNode);
            continue;
        }
        UsbDescriptorRequest *pConfig = configuration(hHub, nPort);
        UsbStringDescriptorNode *pStrings = strings(hHub, nPort, *pInfo, pConfig);
        std::string strProduct;
        for (const UsbStringDescriptorNode *s = pStrings; s; s = s->pNext)
            if (s->DescriptorIndex == pInfo->DeviceDescriptor.iProduct && s->Length >= 2)
                strProduct = utf8(reinterpret_cast<const wchar_t *>(s->pDescriptor + 2), int((s->Length - 2) / 2));
        if (strProduct.empty()) {
            char ids[48];
            std::snprintf(ids, sizeof ids, "%s %04x:%04x", pInfo->DeviceIsHub ? "USB Hub" : "USB Device",
                          unsigned(pInfo->DeviceDescriptor.idVendor), unsigned(pInfo->DeviceDescriptor.idProduct));
            strProduct = ids;
        }
        strName += " : " + strProduct;
        const std::string strPortPath = childPortPath(strHubPath, nPort, nDepth == 1);
        UsbPortLinkInfo *pLink = linkInfo(hHub, nPort, *pInfo, strPortPath);
        if (pInfo->DeviceIsHub && nDepth < kMaxHubDepth) {
            const std::wstring strHub = externalHubName(hHub, nPort);
            CHandle hChild(strHub.empty() ? INVALID_HANDLE_VALUE : openHub(strHub));
            UsbHubNodeInfo *pHub = hChild.valid() ? hubInfo(hChild.get(), strHub, UsbNodeExternalHub) : m_arena.make<UsbHubNodeInfo>();
            if (!pHub)
                return;
            pHub->Kind = UsbNodeExternalHub;
            pHub->pConnectionInfo = pInfo;
            pHub->pConfigDesc = pConfig;
            pHub->pStringDescs = pStrings;
            pHub->pLinkInfo = pLink;
            UsbTreeItem *pItem = list.add(strName, pHub);
            if (pItem && hChild.valid() && pHub->pHubInfo)
                addPorts(pItem, hChild.get(), pHub->pHubInfo->HubDescriptor.bNumberOfPorts, nDepth + 1, strPortPath);
        } else {
            auto *pNode = m_arena.make<UsbDeviceNodeInfo>();
            if (!pNode)
                return;
            pNode->Kind = UsbNodeDevice;
            pNode->pConnectionInfo = pInfo;
            pNode->pConfigDesc = pConfig;
            pNode->pStringDescs = pStrings;
            pNode->pLinkInfo = pLink;
            list.add(strName, pNode);
        }
    }
}

void CWinTreeBuilder::build(UsbRootItem *pRoot)
{
    CDevInfo devices(SetupDiGetClassDevsW(&GUID_DEVINTERFACE_USB_HOST_CONTROLLER, nullptr, nullptr,
                                          DIGCF_PRESENT | DIGCF_DEVICEINTERFACE));
    if (devices.get() == INVALID_HANDLE_VALUE)
        return;
    ChildAppender list(m_arena, &pRoot->pChildren, nullptr);
    for (DWORD i = 0; i < 256; ++i) {
        SP_DEVICE_INTERFACE_DATA iface{};
        iface.cbSize = sizeof iface;
        if (!SetupDiEnumDeviceInterfaces(devices.get(), nullptr, &GUID_DEVINTERFACE_USB_HOST_CONTROLLER, i, &iface))
            break;
        DWORD nRequired = 0;
        SetupDiGetDeviceInterfaceDetailW(devices.get(), &iface, nullptr, 0, &nRequired, nullptr);
        if (nRequired < sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W))
            continue;
        std::vector<BYTE> detailBuffer(nRequired);
        auto *pDetail = reinterpret_cast<SP_DEVICE_INTERFACE_DETAIL_DATA_W *>(detailBuffer.data());
        pDetail->cbSize = sizeof(SP_DEVICE_INTERFACE_DETAIL_DATA_W);
        SP_DEVINFO_DATA data{};
        data.cbSize = sizeof data;
        if (!SetupDiGetDeviceInterfaceDetailW(devices.get(), &iface, pDetail, nRequired, nullptr, &data))
            continue;
        auto *pInfo = m_arena.make<UsbControllerInfo>();
        if (!pInfo)
            return;
        const std::wstring strDesc = deviceProperty(devices.get(), data, SPDRP_DEVICEDESC);
        const std::wstring strIds = deviceProperty(devices.get(), data, SPDRP_HARDWAREID);
        pInfo->Kind = UsbNodeController;
        pInfo->pDeviceDesc = m_arena.wide(utf8(strDesc.c_str()));
        pInfo->pDevicePath = m_arena.wide(utf8(pDetail->DevicePath));
        pInfo->pDriverKey = m_arena.wide(utf8(deviceProperty(devices.get(), data, SPDRP_DRIVER).c_str()));
        pInfo->VendorID = hexAfter(strIds, L"VEN_");
        pInfo->DeviceID = hexAfter(strIds, L"DEV_");
        pInfo->SubSysID = hexAfter(strIds, L"SUBSYS_");
        pInfo->Revision = hexAfter(strIds, L"REV_");
        const std::wstring strService = deviceProperty(devices.get(), data, SPDRP_SERVICE);
        if (!strService.empty())
            pInfo->pDriverName = m_arena.wide(utf8(strService.c_str()));
        DWORD uBus = 0, uAddress = 0;
        if (strIds.find(L"PCI\\") == 0
            && SetupDiGetDeviceRegistryPropertyW(devices.get(), &data, SPDRP_BUSNUMBER, nullptr,
                                                 reinterpret_cast<BYTE *>(&uBus), sizeof uBus, nullptr)
            && SetupDiGetDeviceRegistryPropertyW(devices.get(), &data, SPDRP_ADDRESS, nullptr,
                                                 reinterpret_cast<BYTE *>(&uAddress), sizeof uAddress, nullptr)) {
            // SPDRP_ADDRESS of a PCI device: device number high word, function low word.
            char address[32];
            std::snprintf(address, sizeof address, "0000:%02x:%02x.%x", unsigned(uBus & 0xFF),
                          unsigned((uAddress >> 16) & 0x1F), unsigned(uAddress & 0x7));
            pInfo->pPciAddress = m_arena.wide(address);
        }
        const std::string strBus = std::to_string(++m_nControllers);
        UsbTreeItem *pItem = list.add(strDesc.empty() ? std::string("USB Host Controller") : utf8(strDesc.c_str()), pInfo);
        if (!pItem)
            return;
        CHandle hController(CreateFileW(pDetail->DevicePath, GENERIC_WRITE, FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
        if (!hController.valid())
            continue;
        const std::wstring strRootHub = rootHubName(hController.get());
        if (strRootHub.empty())
            continue;
        CHandle hHub(openHub(strRootHub));
        if (!hHub.valid())
            continue;
        UsbHubNodeInfo *pHub = hubInfo(hHub.get(), strRootHub, UsbNodeRootHub);
        if (!pHub)
            return;
        ChildAppender hubs(m_arena, &pItem->pChildren, pItem);
        if ((pHub->pLinkInfo = m_arena.make<UsbPortLinkInfo>()))
            pHub->pLinkInfo->pPortPath = m_arena.wide(strBus);
        UsbTreeItem *pHubItem = hubs.add("RootHub", pHub);
        if (pHubItem && pHub->pHubInfo)
            addPorts(pHubItem, hHub.get(), pHub->pHubInfo->HubDescriptor.bNumberOfPorts, 1, strBus);
    }
}

} // namespace

void buildPlatformTree(UsbRootItem *pRoot, Arena &arena)
{
    CWinTreeBuilder(arena).build(pRoot);
}

} // namespace probekit
