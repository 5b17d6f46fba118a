// The USB tree from Linux sysfs: PCI USB host controllers (class 0x0c03xx),
// their root hubs usbN, and below each hub one node per port: the device
// directory B-P[.P...] when something is connected, an empty port otherwise.
// Paths are built from names; the walk follows no links except the PCI
// device links it starts from.
#include "treebuilder.h"

#include "fssource.h"
#include "idsfile.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <vector>

namespace probekit {

namespace {

constexpr size_t kMaxAttrBytes = 4096;
constexpr unsigned kMaxPipes = 32;

std::string trimmed(std::string s)
{
    while (!s.empty() && (s.back() == '\n' || s.back() == '\r' || s.back() == ' ' || s.back() == '\0'))
        s.pop_back();
    return s;
}

bool parseNumber(const std::string &strText, int nBase, unsigned long &uOut)
{
    const std::string s = trimmed(strText);
    if (s.empty() || s.size() > 20)
        return false;
    char *pEnd = nullptr;
    const unsigned long v = std::strtoul(s.c_str(), &pEnd, nBase);
    if (!pEnd || *pEnd != '\0' || s[0] == '-')
        return false;
    uOut = v;
    return true;
}

uint16_t le16(const uint8_t *p)
{
    return uint16_t(p[0] | (p[1] << 8));
}

// Speed attribute (Mbit/s) to the speed code.
uint8_t speedCode(const std::string &strSpeed)
{
    const std::string s = trimmed(strSpeed);
    if (s == "1.5")
        return UsbSpeedLow;
    if (s == "12")
        return UsbSpeedFull;
    if (s == "480")
        return UsbSpeedHigh;
    unsigned long v = 0;
    if (parseNumber(s, 10, v) && v >= 5000)
        return UsbSpeedSuper;
    return UsbSpeedFull;
}

std::string bcdVersion(uint16_t bcd)
{
    char buf[16];
    std::snprintf(buf, sizeof buf, "USB %u.%u", unsigned(bcd >> 8) & 0xFF, unsigned(bcd >> 4) & 0xF);
    return buf;
}

// What one USB device directory tells about the device.
struct DeviceFacts
{
    std::string strDir;  // "/sys/devices/.../1-1"
    std::string strName; // "1-1" or "usb1"
    std::string strDescriptors;
    bool bHaveDd = false;
    UsbDeviceDescriptor dd{};
    const uint8_t *pConfig = nullptr; // active configuration inside strDescriptors
    size_t nConfig = 0;
    uint8_t uSpeed = UsbSpeedFull;
    uint16_t uDevNum = 0;
    uint8_t uConfigValue = 0;
    unsigned nPorts = 0;
    bool bHub = false;
    std::map<unsigned, unsigned> mapAltSetting;     // interface -> current alternate setting
    std::vector<std::pair<uint32_t, std::string>> vecStrings; // index -> text
};

class SysfsTreeBuilder
{
public:
    SysfsTreeBuilder(FsSource &fs, Arena &arena)
        : m_fs(fs), m_arena(arena)
    {
    }
    void build(UsbRootItem *pRoot);

private:
    std::string attr(const std::string &strDir, const char *pName)
    {
        std::string s;
        m_fs.readFile(strDir + "/" + pName, s, kMaxAttrBytes);
        return trimmed(s);
    }
    bool attrNumber(const std::string &strDir, const char *pName, int nBase, unsigned long &uOut)
    {
        std::string s;
        return m_fs.readFile(strDir + "/" + pName, s, kMaxAttrBytes) && parseNumber(s, nBase, uOut);
    }
    void readDevice(DeviceFacts &facts, bool bRootHub);
    void addController(ChildAppender &list, const std::string &strDir, const std::string &strKey,
                       const std::string &strName, uint32_t uIds, uint32_t uSubSys, uint32_t uRevision,
                       const std::vector<std::string> &vecBusNames);
    std::string resolveLink(const std::string &strLink);
    void addHubPorts(UsbTreeItem *pHubItem, const DeviceFacts &hub, int nDepth);
    UsbHubNodeInfo *makeHubInfo(const DeviceFacts &facts, bool bRootHub);
    UsbPortConnectionInfo *makeConnectionInfo(const DeviceFacts *pFacts, unsigned nPort);
    UsbDescriptorRequest *makeConfigRequest(const DeviceFacts &facts, unsigned nPort);
    UsbStringDescriptorNode *makeStrings(const DeviceFacts &facts);
    bool countNode() { return ++m_nNodes <= kMaxNodes; }

    FsSource &m_fs;
    Arena &m_arena;
    unsigned m_nNodes = 0;
};

void SysfsTreeBuilder::readDevice(DeviceFacts &f, bool bRootHub)
{
    const std::string &d = f.strDir;
    m_fs.readFile(d + "/descriptors", f.strDescriptors, kMaxDescriptorBytes);
    const auto *p = reinterpret_cast<const uint8_t *>(f.strDescriptors.data());
    const size_t n = f.strDescriptors.size();
    if (n >= sizeof(UsbDeviceDescriptor)) {
        std::memcpy(&f.dd, p, sizeof f.dd);
        f.bHaveDd = true;
    }
    unsigned long v = 0;
    if (attrNumber(d, "bConfigurationValue", 10, v) && v <= 255)
        f.uConfigValue = uint8_t(v);
    // The configurations follow the device descriptor, each wTotalLength long.
    size_t pos = sizeof(UsbDeviceDescriptor);
    const uint8_t *pFirst = nullptr;
    size_t nFirst = 0;
    while (pos + 4 <= n) {
        const size_t nTotal = le16(p + pos + 2);
        if (nTotal < 4 || p[pos + 1] != 2)
            break;
        const size_t nHave = std::min(nTotal, n - pos);
        if (!pFirst) {
            pFirst = p + pos;
            nFirst = nHave;
        }
        if (nHave >= 6 && p[pos + 5] == f.uConfigValue) {
            f.pConfig = p + pos;
            f.nConfig = nHave;
            break;
        }
        pos += nHave;
    }
    if (!f.pConfig) {
        f.pConfig = pFirst;
        f.nConfig = nFirst;
    }
    if (!f.pConfig && n > sizeof(UsbDeviceDescriptor)) { // odd data: hand it over as it is
        f.pConfig = p + sizeof(UsbDeviceDescriptor);
        f.nConfig = n - sizeof(UsbDeviceDescriptor);
    }

    f.uSpeed = speedCode(attr(d, "speed"));
    if (attrNumber(d, "devnum", 10, v) && v <= 0xFFFF)
        f.uDevNum = uint16_t(v);
    f.bHub = bRootHub || (f.bHaveDd && f.dd.bDeviceClass == 9);
    if (f.bHub && attrNumber(d, "maxchild", 10, v))
        f.nPorts = unsigned(std::min<unsigned long>(v, kMaxPorts));
    if (f.bHub && f.nPorts == 0 && attr(d, "maxchild").empty()) {
        // No maxchild: count the port entries of the hub interface instead.
        std::vector<std::string> vecNames;
        const std::string strIf = d + "/" + (bRootHub ? f.strName.substr(3) + "-0" : f.strName) + ":"
                                  + std::to_string(f.uConfigValue ? f.uConfigValue : 1) + ".0";
        if (m_fs.listDir(strIf, vecNames))
            for (const std::string &e : vecNames) {
                const size_t at = e.rfind("-port");
                if (at != std::string::npos && parseNumber(e.substr(at + 5), 10, v))
                    f.nPorts = std::max(f.nPorts, unsigned(std::min<unsigned long>(v, kMaxPorts)));
            }
    }

    if (f.bHaveDd) {
        const struct { uint8_t idx; const char *name; } kStrings[] = {
            {f.dd.iManufacturer, "manufacturer"}, {f.dd.iProduct, "product"}, {f.dd.iSerialNumber, "serial"}};
        for (const auto &s : kStrings)
            if (s.idx != 0) {
                std::string text;
                if (m_fs.readFile(d + "/" + s.name, text, kMaxAttrBytes))
                    f.vecStrings.emplace_back(s.idx, trimmed(text));
            }
    }
    // Walk the active configuration (stride bLength) for its string and the
    // current alternate settings of its interfaces.
    if (f.pConfig && f.nConfig >= 9 && f.pConfig[1] == 2) {
        if (f.pConfig[6] != 0) {
            std::string text;
            if (m_fs.readFile(d + "/configuration", text, kMaxAttrBytes))
                f.vecStrings.emplace_back(f.pConfig[6], trimmed(text));
        }
        const std::string strIfBase = d + "/" + (bRootHub ? f.strName.substr(3) + "-0" : f.strName) + ":"
                                      + std::to_string(f.pConfig[5]) + ".";
        std::vector<unsigned> vecAlternates;
        size_t at = 0;
        while (at + 2 <= f.nConfig) {
            const uint8_t len = f.pConfig[at];
            if (len < 2 || at + len > f.nConfig)
                break;
            if (f.pConfig[at + 1] == 4 && len >= 9) {
                // Interfaces with alternate settings: the current one is in sysfs.
                const unsigned nIf = f.pConfig[at + 2];
                if (f.pConfig[at + 3] != 0)
                    vecAlternates.push_back(nIf);
                f.mapAltSetting.emplace(nIf, 0u);
            }
            at += len;
        }
        for (const unsigned nIf : vecAlternates) {
            unsigned long alt = 0;
            if (attrNumber(strIfBase + std::to_string(nIf), "bAlternateSetting", 10, alt) && alt < 256)
                f.mapAltSetting[nIf] = unsigned(alt);
        }
        // Interface strings of the current settings.
        at = 0;
        while (at + 2 <= f.nConfig) {
            const uint8_t len = f.pConfig[at];
            if (len < 2 || at + len > f.nConfig)
                break;
            if (f.pConfig[at + 1] == 4 && len >= 9 && f.pConfig[at + 8] != 0) {
                const unsigned nIf = f.pConfig[at + 2];
                auto it = f.mapAltSetting.find(nIf);
                if (it != f.mapAltSetting.end() && it->second == f.pConfig[at + 3]) {
                    std::string text;
                    if (m_fs.readFile(strIfBase + std::to_string(nIf) + "/interface", text, kMaxAttrBytes))
                        f.vecStrings.emplace_back(f.pConfig[at + 8], trimmed(text));
                }
            }
            at += len;
        }
    }
}

UsbStringDescriptorNode *SysfsTreeBuilder::makeStrings(const DeviceFacts &f)
{
    UsbStringDescriptorNode *pHead = nullptr;
    UsbStringDescriptorNode **ppNext = &pHead;
    for (const auto &entry : f.vecStrings) {
        bool bDuplicate = false;
        for (UsbStringDescriptorNode *q = pHead; q; q = q->pNext)
            bDuplicate = bDuplicate || q->DescriptorIndex == entry.first;
        if (bDuplicate)
            continue;
        UsbStringDescriptorNode *pNode = makeStringDescriptor(m_arena, entry.first, entry.second);
        if (!pNode)
            break;
        *ppNext = pNode;
        ppNext = &pNode->pNext;
    }
    return pHead;
}

UsbPortConnectionInfo *SysfsTreeBuilder::makeConnectionInfo(const DeviceFacts *f, unsigned nPort)
{
    // Open pipes: the endpoints of the current settings of the active configuration.
    std::vector<UsbEndpointDescriptor> vecPipes;
    if (f && f->pConfig) {
        int nIf = -1, nAlt = -1;
        size_t at = 0;
        while (at + 2 <= f->nConfig && vecPipes.size() < kMaxPipes) {
            const uint8_t len = f->pConfig[at];
            if (len < 2 || at + len > f->nConfig)
                break;
            const uint8_t type = f->pConfig[at + 1];
            if (type == 4 && len >= 9) {
                nIf = f->pConfig[at + 2];
                nAlt = f->pConfig[at + 3];
            } else if (type == 5 && len >= 7 && nIf >= 0) {
                auto it = f->mapAltSetting.find(unsigned(nIf));
                if (it != f->mapAltSetting.end() && int(it->second) == nAlt) {
                    UsbEndpointDescriptor ep;
                    std::memcpy(&ep, f->pConfig + at, sizeof ep);
                    ep.bLength = 7;
                    vecPipes.push_back(ep);
                }
            }
            at += len;
        }
    }
    const size_t nPipeSlots = vecPipes.empty() ? 1 : vecPipes.size();
    auto *pInfo = static_cast<UsbPortConnectionInfo *>(
        m_arena.alloc(offsetof(UsbPortConnectionInfo, PipeList) + nPipeSlots * sizeof(UsbPipeInfo)));
    if (!pInfo)
        return nullptr;
    pInfo->ConnectionIndex = nPort;
    if (!f)
        return pInfo; // empty port: everything 0, status NoDeviceConnected
    if (f->bHaveDd)
        pInfo->DeviceDescriptor = f->dd;
    pInfo->CurrentConfigurationValue = f->uConfigValue;
    pInfo->Speed = f->uSpeed;
    pInfo->DeviceIsHub = f->bHub ? 1 : 0;
    pInfo->DeviceAddress = f->uDevNum;
    pInfo->NumberOfOpenPipes = uint32_t(vecPipes.size());
    pInfo->ConnectionStatus = UsbDeviceConnected;
    for (size_t i = 0; i < vecPipes.size(); ++i) {
        UsbPipeInfo pipe{};
        pipe.EndpointDescriptor = vecPipes[i];
        std::memcpy(reinterpret_cast<uint8_t *>(pInfo->PipeList) + i * sizeof(UsbPipeInfo), &pipe, sizeof pipe);
    }
    return pInfo;
}

UsbDescriptorRequest *SysfsTreeBuilder::makeConfigRequest(const DeviceFacts &f, unsigned nPort)
{
    if (!f.pConfig || f.nConfig == 0)
        return nullptr;
    const size_t nBytes = std::min<size_t>(f.nConfig, 0xFFFF);
    auto *pReq = static_cast<UsbDescriptorRequest *>(m_arena.alloc(offsetof(UsbDescriptorRequest, Data) + nBytes));
    if (!pReq)
        return nullptr;
    pReq->ConnectionIndex = nPort;
    pReq->SetupPacket.bmRequest = 0x80;
    pReq->SetupPacket.bRequest = 6; // GET_DESCRIPTOR
    pReq->SetupPacket.wValue = uint16_t(2 << 8);
    pReq->SetupPacket.wLength = uint16_t(nBytes);
    std::memcpy(pReq->Data, f.pConfig, nBytes);
    return pReq;
}

UsbHubNodeInfo *SysfsTreeBuilder::makeHubInfo(const DeviceFacts &f, bool bRootHub)
{
    auto *pInfo = m_arena.make<UsbHubNodeInfo>();
    auto *pBlock = m_arena.make<UsbHubInformationBlock>();
    auto *pCapsEx = m_arena.make<UsbHubCapabilitiesEx>();
    auto *pCaps = m_arena.make<UsbHubCapabilities>();
    if (!pInfo || !pBlock || !pCapsEx || !pCaps)
        return nullptr;
    pInfo->Kind = bRootHub ? UsbNodeRootHub : UsbNodeExternalHub;
    pInfo->pHubName = m_arena.wide(f.strName);
    const bool bSuper = f.bHaveDd && f.dd.bcdUSB >= 0x0300;
    UsbHubDescriptor &hd = pBlock->HubDescriptor;
    hd.bDescriptorType = bSuper ? 0x2A : 0x29;
    hd.bNumberOfPorts = uint8_t(f.nPorts);
    hd.bDescriptorLength = uint8_t(bSuper ? 12 : 7 + 2 * ((f.nPorts + 8) / 8));
    pInfo->uHubFieldsKnown = UsbHubFieldPorts;
    if (f.pConfig && f.nConfig >= 9) {
        pBlock->HubIsBusPowered = (f.pConfig[7] & 0x40) ? 0 : 1;
        pInfo->uHubFieldsKnown |= UsbHubFieldBusPowered;
    }
    pInfo->pHubInfo = pBlock;

    uint32_t uFlags = 0;
    if (f.bHaveDd && f.dd.bcdUSB >= 0x0200)
        uFlags |= 0x01; // high speed capable
    if (f.uSpeed == UsbSpeedHigh)
        uFlags |= 0x02;
    if (f.bHaveDd && f.dd.bDeviceProtocol == 2) {
        uFlags |= 0x04; // multi-TT capable; on when the hub interface runs its multi-TT setting
        auto it = f.mapAltSetting.find(0);
        size_t at = 0;
        while (f.pConfig && at + 9 <= f.nConfig && it != f.mapAltSetting.end()) {
            const uint8_t len = f.pConfig[at];
            if (len < 2)
                break;
            if (f.pConfig[at + 1] == 4 && f.pConfig[at + 2] == 0 && f.pConfig[at + 3] == it->second
                && f.pConfig[at + 7] == 2)
                uFlags |= 0x08;
            at += len;
        }
    }
    if (bRootHub)
        uFlags |= 0x10;
    if (attr(f.strDir, "power/wakeup") == "enabled")
        uFlags |= 0x20;
    pCapsEx->CapabilityFlags = uFlags;
    pCaps->CapabilityFlags = (uFlags & 0x01) ? 1 : 0;
    pInfo->pHubCapsEx = pCapsEx;
    pInfo->pHubCaps = pCaps;
    return pInfo;
}

void SysfsTreeBuilder::addHubPorts(UsbTreeItem *pHubItem, const DeviceFacts &hub, int nDepth)
{
    ChildAppender list(m_arena, &pHubItem->pChildren, pHubItem);
    const bool bRoot = hub.strName.compare(0, 3, "usb") == 0;
    const std::string strPrefix = bRoot ? hub.strName.substr(3) + "-" : hub.strName + ".";
    for (unsigned nPort = 1; nPort <= hub.nPorts; ++nPort) {
        if (!countNode())
            return;
        DeviceFacts f;
        f.strName = strPrefix + std::to_string(nPort);
        f.strDir = hub.strDir + "/" + f.strName;
        if (!m_fs.isDir(f.strDir, false)) {
            auto *pInfo = m_arena.make<UsbDeviceNodeInfo>();
            if (!pInfo)
                return;
            pInfo->Kind = UsbNodeDevice;
            pInfo->pConnectionInfo = makeConnectionInfo(nullptr, nPort);
            list.add("[Port" + std::to_string(nPort) + "] NoDeviceConnected", pInfo);
            continue;
        }
        readDevice(f, false);
        std::string strProduct;
        for (const auto &s : f.vecStrings)
            if (f.bHaveDd && s.first == f.dd.iProduct)
                strProduct = s.second;
        if (strProduct.empty()) {
            char buf[48];
            std::snprintf(buf, sizeof buf, "%s %04x:%04x", f.bHub ? "USB Hub" : "USB Device",
                          unsigned(f.dd.idVendor), unsigned(f.dd.idProduct));
            strProduct = buf;
        }
        const std::string strName = "[Port" + std::to_string(nPort) + "] DeviceConnected : " + strProduct;
        if (f.bHub && nDepth < kMaxHubDepth) {
            UsbHubNodeInfo *pInfo = makeHubInfo(f, false);
            if (!pInfo)
                return;
            pInfo->pConnectionInfo = makeConnectionInfo(&f, nPort);
            pInfo->pConfigDesc = makeConfigRequest(f, nPort);
            pInfo->pStringDescs = makeStrings(f);
            if (UsbTreeItem *pItem = list.add(strName, pInfo))
                addHubPorts(pItem, f, nDepth + 1);
        } else {
            auto *pInfo = m_arena.make<UsbDeviceNodeInfo>();
            if (!pInfo)
                return;
            pInfo->Kind = UsbNodeDevice;
            pInfo->pConnectionInfo = makeConnectionInfo(&f, nPort);
            pInfo->pConfigDesc = makeConfigRequest(f, nPort);
            pInfo->pStringDescs = makeStrings(f);
            list.add(strName, pInfo);
        }
    }
}

void SysfsTreeBuilder::addController(ChildAppender &list, const std::string &strDir, const std::string &strKey,
                                     const std::string &strName, uint32_t uIds, uint32_t uSubSys, uint32_t uRevision,
                                     const std::vector<std::string> &vecBusNames)
{
    auto *pInfo = m_arena.make<UsbControllerInfo>();
    if (!pInfo || !countNode())
        return;
    pInfo->Kind = UsbNodeController;
    pInfo->pDeviceDesc = m_arena.wide(strName);
    pInfo->pDevicePath = m_arena.wide(strDir);
    pInfo->pDriverKey = m_arena.wide(strKey);
    pInfo->VendorID = uIds >> 16;
    pInfo->DeviceID = uIds & 0xFFFF;
    pInfo->SubSysID = uSubSys;
    pInfo->Revision = uRevision;
    UsbTreeItem *pItem = list.add(strName, pInfo);
    if (!pItem)
        return;

    std::vector<std::pair<unsigned long, std::string>> vecBuses;
    for (const std::string &e : vecBusNames) {
        unsigned long nBus = 0;
        if (e.size() > 3 && e.compare(0, 3, "usb") == 0 && parseNumber(e.substr(3), 10, nBus)
            && m_fs.isDir(strDir + "/" + e, false))
            vecBuses.emplace_back(nBus, e);
    }
    std::sort(vecBuses.begin(), vecBuses.end());
    ChildAppender hubs(m_arena, &pItem->pChildren, pItem);
    for (const auto &bus : vecBuses) {
        if (!countNode())
            return;
        DeviceFacts f;
        f.strName = bus.second;
        f.strDir = strDir + "/" + bus.second;
        readDevice(f, true);
        UsbHubNodeInfo *pHub = makeHubInfo(f, true);
        if (!pHub)
            return;
        std::string strHubName = "Root Hub " + f.strName;
        if (f.bHaveDd)
            strHubName += " (" + bcdVersion(f.dd.bcdUSB) + ")";
        if (UsbTreeItem *pHubItem = hubs.add(strHubName, pHub))
            addHubPorts(pHubItem, f, 1);
    }
}

// The absolute path a sysfs link points to ("" when it is no link).
std::string SysfsTreeBuilder::resolveLink(const std::string &strLink)
{
    std::string strTarget;
    if (!m_fs.readLink(strLink, strTarget))
        return std::string();
    std::string strJoined = strTarget[0] == '/' ? strTarget : strLink.substr(0, strLink.rfind('/') + 1) + strTarget;
    std::vector<std::string> vecParts;
    size_t at = 0;
    while (at <= strJoined.size()) {
        const size_t next = std::min(strJoined.find('/', at), strJoined.size());
        const std::string part = strJoined.substr(at, next - at);
        if (part == "..") {
            if (!vecParts.empty())
                vecParts.pop_back();
        } else if (!part.empty() && part != ".") {
            vecParts.push_back(part);
        }
        at = next + 1;
    }
    std::string strOut;
    for (const std::string &part : vecParts)
        strOut += "/" + part;
    return strOut;
}

void SysfsTreeBuilder::build(UsbRootItem *pRoot)
{
    // PCI host controllers (class 0x0c03xx) in address order.
    const std::string strPci = "/sys/bus/pci/devices";
    std::vector<std::string> vecDevices;
    m_fs.listDir(strPci, vecDevices);
    std::sort(vecDevices.begin(), vecDevices.end());
    struct Controller
    {
        std::string strKey, strDir;
        uint32_t uIds, uSubSys, uRevision, uClass;
        std::vector<std::string> vecBuses;
    };
    std::vector<Controller> vecControllers;
    std::map<uint32_t, std::string> mapNames;
    std::vector<std::string> vecPciReal;
    for (const std::string &strAddress : vecDevices) {
        const std::string strDir = strPci + "/" + strAddress;
        unsigned long uClass = 0, uVendor = 0, uDevice = 0, uSubVendor = 0, uSubDevice = 0, uRevision = 0;
        if (!attrNumber(strDir, "class", 16, uClass) || (uClass >> 8) != 0x0c03)
            continue;
        attrNumber(strDir, "vendor", 16, uVendor);
        attrNumber(strDir, "device", 16, uDevice);
        attrNumber(strDir, "subsystem_vendor", 16, uSubVendor);
        attrNumber(strDir, "subsystem_device", 16, uSubDevice);
        attrNumber(strDir, "revision", 16, uRevision);
        const uint32_t uIds = uint32_t(((uVendor & 0xFFFF) << 16) | (uDevice & 0xFFFF));
        Controller c{strAddress, strDir, uIds, uint32_t(((uSubDevice & 0xFFFF) << 16) | (uSubVendor & 0xFFFF)),
                     uint32_t(uRevision & 0xFF), uint32_t(uClass), {}};
        m_fs.listDir(strDir, c.vecBuses);
        vecControllers.push_back(std::move(c));
        mapNames[uIds];
        const std::string strReal = resolveLink(strDir);
        if (!strReal.empty())
            vecPciReal.push_back(strReal);
    }
    if (!vecControllers.empty())
        lookupPciNames(m_fs, mapNames);
    // Host controllers that are not PCI devices (platform and virtual ones):
    // the parents of the root hubs the USB bus lists, grouped by parent.
    std::vector<std::string> vecUsb;
    m_fs.listDir("/sys/bus/usb/devices", vecUsb);
    std::sort(vecUsb.begin(), vecUsb.end());
    std::vector<Controller> vecOthers;
    for (const std::string &strName : vecUsb) {
        unsigned long nBus = 0;
        if (strName.size() <= 3 || strName.compare(0, 3, "usb") != 0 || !parseNumber(strName.substr(3), 10, nBus))
            continue;
        const std::string strReal = resolveLink("/sys/bus/usb/devices/" + strName);
        const size_t slash = strReal.rfind('/');
        if (strReal.compare(0, 13, "/sys/devices/") != 0 || slash == std::string::npos || slash <= 13)
            continue;
        const std::string strParent = strReal.substr(0, slash);
        if (std::find(vecPciReal.begin(), vecPciReal.end(), strParent) != vecPciReal.end())
            continue;
        auto it = std::find_if(vecOthers.begin(), vecOthers.end(), [&](const Controller &c) { return c.strDir == strParent; });
        if (it == vecOthers.end()) {
            vecOthers.push_back({strParent.substr(13), strParent, 0, 0, 0, 0, {}});
            it = vecOthers.end() - 1;
        }
        it->vecBuses.push_back(strName);
    }

    ChildAppender list(m_arena, &pRoot->pChildren, nullptr);
    for (const Controller &c : vecControllers) {
        std::string strName = mapNames[c.uIds];
        if (strName.empty()) {
            const unsigned uIf = c.uClass & 0xFF;
            strName = uIf == 0x00 ? "UHCI" : uIf == 0x10 ? "OHCI" : uIf == 0x20 ? "EHCI" : uIf == 0x30 ? "xHCI" : "USB";
            strName += " Host Controller";
        }
        addController(list, c.strDir, c.strKey, strName, c.uIds, c.uSubSys, c.uRevision, c.vecBuses);
    }
    for (const Controller &c : vecOthers)
        addController(list, c.strDir, c.strKey, "USB Host Controller (" + c.strDir.substr(c.strDir.rfind('/') + 1) + ")",
                      0, 0, 0, c.vecBuses);
}

} // namespace

UsbStringDescriptorNode *makeStringDescriptor(Arena &arena, uint32_t uIndex, const std::string &strUtf8)
{
    std::u16string text = utf8ToUtf16(strUtf8);
    if (text.size() > 126)
        text.resize(126);
    auto *pNode = arena.make<UsbStringDescriptorNode>();
    auto *pBytes = static_cast<uint8_t *>(arena.alloc(2 + 2 * text.size()));
    if (!pNode || !pBytes)
        return nullptr;
    pBytes[0] = uint8_t(2 + 2 * text.size());
    pBytes[1] = 3;
    for (size_t i = 0; i < text.size(); ++i) {
        pBytes[2 + 2 * i] = uint8_t(text[i] & 0xFF);
        pBytes[3 + 2 * i] = uint8_t(text[i] >> 8);
    }
    pNode->DescriptorIndex = uIndex;
    pNode->LanguageId = 0x0409;
    pNode->Length = pBytes[0];
    pNode->pDescriptor = pBytes;
    return pNode;
}

void buildSysfsTree(FsSource &fs, UsbRootItem *pRoot, Arena &arena)
{
    SysfsTreeBuilder(fs, arena).build(pRoot);
}

void buildPlatformTree(UsbRootItem *pRoot, Arena &arena)
{
    RealFsSource fs;
    buildSysfsTree(fs, pRoot, arena);
}

} // namespace probekit
