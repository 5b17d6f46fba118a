// Reading one USB device directory of sysfs: the descriptors file (device
// descriptor, then the configurations), speed, address, active
// configuration, strings and the current alternate settings, and the
// records built from them.
#include "sysfsdevice.h"

#include "fssource.h"
#include "portlink.h"
#include "treebuilder.h"
#include "usbstrings.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace probekit {

namespace {
constexpr size_t kMaxAttrBytes = 4096;
constexpr unsigned kMaxPipes = 32;
} // namespace

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

static uint16_t le16(const uint8_t *p)
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
    return UsbSpeedUnknown;
}

std::string bcdVersion(uint16_t bcd)
{
    char buf[16];
    std::snprintf(buf, sizeof buf, "USB %u.%u", unsigned(bcd >> 8) & 0xFF, unsigned(bcd >> 4) & 0xF);
    return buf;
}

std::string SysfsDeviceReader::attr(const std::string &strDir, const char *pName)
{
    std::string s;
    m_fs.readFileIn(strDir, pName, s, kMaxAttrBytes);
    return trimmed(s);
}

bool SysfsDeviceReader::attrNumber(const std::string &strDir, const char *pName, int nBase, unsigned long &uOut)
{
    std::string s;
    return m_fs.readFileIn(strDir, pName, s, kMaxAttrBytes) && parseNumber(s, nBase, uOut);
}

void SysfsDeviceReader::readDevice(DeviceFacts &f, bool bRootHub)
{
    const std::string &d = f.strDir;
    m_fs.readFileIn(d, "descriptors", f.strDescriptors, kMaxDescriptorBytes);
    const auto *p = reinterpret_cast<const uint8_t *>(f.strDescriptors.data());
    const size_t n = f.strDescriptors.size();
    if (n >= sizeof(UsbDeviceDescriptor)) {
        std::memcpy(&f.dd, p, sizeof f.dd);
        f.bHaveDd = true;
    }
    unsigned long v = 0;
    const bool bConfigKnown = attrNumber(d, "bConfigurationValue", 10, v) && v <= 255;
    if (bConfigKnown)
        f.uConfigValue = uint8_t(v);
    // The configurations follow the device descriptor, each wTotalLength
    // long: the first is shown, the active one tells pipes and strings.
    size_t pos = sizeof(UsbDeviceDescriptor);
    while (pos + 4 <= n) {
        const size_t nTotal = le16(p + pos + 2);
        if (nTotal < 4 || p[pos + 1] != 2)
            break;
        const size_t nHave = std::min(nTotal, n - pos);
        if (!f.pConfig) {
            f.pConfig = p + pos;
            f.nConfig = nHave;
        }
        if (nHave >= 6 && p[pos + 5] == f.uConfigValue) {
            f.pActive = p + pos;
            f.nActive = nHave;
            break;
        }
        pos += nHave;
    }
    if (!bConfigKnown && !f.pActive) { // no attribute: take the first as the active one
        f.pActive = f.pConfig;
        f.nActive = f.nConfig;
    }
    if (!f.pConfig && n > sizeof(UsbDeviceDescriptor)) { // odd data: hand it over as it is
        f.pConfig = p + sizeof(UsbDeviceDescriptor);
        f.nConfig = n - sizeof(UsbDeviceDescriptor);
    }

    const std::string strSpeed = attr(d, "speed");
    f.uSpeed = speedCode(strSpeed);
    f.uSpeedKbps = speedAttributeKbps(strSpeed);
    if (attrNumber(d, "devnum", 10, v) && v <= 0xFFFF)
        f.uDevNum = uint16_t(v);
    // A hub: the root hub, the hub device class, or any device the kernel
    // gave ports (a hub that declares its class only on its interface).
    const bool bMaxChild = attrNumber(d, "maxchild", 10, v);
    if (bMaxChild)
        f.nPorts = unsigned(std::min<unsigned long>(v, kMaxPorts));
    f.bHub = bRootHub || (f.bHaveDd && f.dd.bDeviceClass == 9) || f.nPorts > 0;
    if (!f.bHub)
        f.nPorts = 0;
    if (f.bHub && f.nPorts == 0 && !bMaxChild) {
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
                if (m_fs.readFileIn(d, s.name, text, kMaxAttrBytes))
                    f.vecStrings.emplace_back(s.idx, trimmed(text));
            }
    }
    // Walk the active configuration (stride bLength) for its string and the
    // current alternate settings of its interfaces.
    if (f.pActive && f.nActive >= 9 && f.pActive[1] == 2) {
        if (f.pActive[6] != 0) {
            std::string text;
            if (m_fs.readFileIn(d, "configuration", text, kMaxAttrBytes))
                f.vecStrings.emplace_back(f.pActive[6], trimmed(text));
        }
        const std::string strIfBase = d + "/" + (bRootHub ? f.strName.substr(3) + "-0" : f.strName) + ":"
                                      + std::to_string(f.pActive[5]) + ".";
        std::vector<unsigned> vecAlternates;
        size_t at = 0;
        while (at + 2 <= f.nActive) {
            const uint8_t len = f.pActive[at];
            if (len < 2 || at + len > f.nActive)
                break;
            if (f.pActive[at + 1] == 4 && len >= 9) {
                // Interfaces with alternate settings: the current one is in sysfs.
                const unsigned nIf = f.pActive[at + 2];
                if (f.pActive[at + 3] != 0)
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
        while (at + 2 <= f.nActive) {
            const uint8_t len = f.pActive[at];
            if (len < 2 || at + len > f.nActive)
                break;
            if (f.pActive[at + 1] == 4 && len >= 9 && f.pActive[at + 8] != 0) {
                const unsigned nIf = f.pActive[at + 2];
                auto it = f.mapAltSetting.find(nIf);
                if (it != f.mapAltSetting.end() && it->second == f.pActive[at + 3]) {
                    std::string text;
                    if (m_fs.readFile(strIfBase + std::to_string(nIf) + "/interface", text, kMaxAttrBytes))
                        f.vecStrings.emplace_back(f.pActive[at + 8], trimmed(text));
                }
            }
            at += len;
        }
    }
    // The kernel reads these strings in the first language of the device's
    // string descriptor 0 and does not say which one that is: ask the device
    // when its node may be used, else the language stays unknown (0).
    if (!f.vecStrings.empty() && f.uDevNum != 0 && hasUsbfs()) {
        // The bus number leads the name: "usb3" or "3-1.2".
        unsigned long nBus = 0;
        const std::string strBus = bRootHub ? f.strName.substr(3) : f.strName.substr(0, f.strName.find('-'));
        std::string strZero;
        if (parseNumber(strBus, 10, nBus) && m_fs.readLanguageDescriptor(unsigned(nBus), f.uDevNum, strZero))
            f.uLanguage = firstLanguage(reinterpret_cast<const uint8_t *>(strZero.data()), strZero.size());
    }
}

bool SysfsDeviceReader::hasUsbfs()
{
    if (m_nUsbfs < 0)
        m_nUsbfs = m_fs.isLiveRoot() && m_fs.isDir("/dev/bus/usb", true) ? 1 : 0;
    return m_nUsbfs == 1;
}

UsbStringDescriptorNode *SysfsDeviceReader::makeStrings(const DeviceFacts &f)
{
    UsbStringDescriptorNode *pHead = nullptr;
    UsbStringDescriptorNode **ppNext = &pHead;
    for (const auto &entry : f.vecStrings) {
        bool bDuplicate = false;
        for (UsbStringDescriptorNode *q = pHead; q; q = q->pNext)
            bDuplicate = bDuplicate || q->DescriptorIndex == entry.first;
        if (bDuplicate)
            continue;
        UsbStringDescriptorNode *pNode = makeStringDescriptor(m_arena, entry.first, f.uLanguage, entry.second);
        if (!pNode)
            break;
        *ppNext = pNode;
        ppNext = &pNode->pNext;
    }
    return pHead;
}

UsbPortLinkInfo *SysfsDeviceReader::makeLinkInfo(const DeviceFacts &f, const std::string &strPortPath)
{
    auto *pLink = m_arena.make<UsbPortLinkInfo>();
    if (!pLink)
        return nullptr;
    pLink->pPortPath = m_arena.wide(strPortPath);
    pLink->SpeedKbps = f.uSpeedKbps;
    // sysfs tells the speed, and bcdUSB 0x03xx a SuperSpeed device; a device
    // that fell back to USB 2 reports 0x0210 and does not say what it could do.
    if (f.bHaveDd && f.dd.bcdUSB >= 0x0300) {
        pLink->Flags |= UsbLinkSuperSpeedCapable;
        pLink->FlagsKnown |= UsbLinkSuperSpeedCapable;
    }
    UsbPortConnectionInfo connection{};
    connection.Speed = f.uSpeed;
    completeLinkFromConnection(connection, *pLink);
    return pLink;
}

UsbPortConnectionInfo *SysfsDeviceReader::makeConnectionInfo(const DeviceFacts *f, unsigned nPort)
{
    // Open pipes: the endpoints of the current settings of the active configuration.
    std::vector<UsbEndpointDescriptor> vecPipes;
    if (f && f->pActive) {
        int nIf = -1, nAlt = -1;
        size_t at = 0;
        while (at + 2 <= f->nActive && vecPipes.size() < kMaxPipes) {
            const uint8_t len = f->pActive[at];
            if (len < 2 || at + len > f->nActive)
                break;
            const uint8_t type = f->pActive[at + 1];
            if (type == 4 && len >= 9) {
                nIf = f->pActive[at + 2];
                nAlt = f->pActive[at + 3];
            } else if (type == 5 && len >= 7 && nIf >= 0) {
                auto it = f->mapAltSetting.find(unsigned(nIf));
                if (it != f->mapAltSetting.end() && int(it->second) == nAlt) {
                    UsbEndpointDescriptor ep;
                    std::memcpy(&ep, f->pActive + at, sizeof ep);
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

UsbDescriptorRequest *SysfsDeviceReader::makeConfigRequest(const DeviceFacts &f, unsigned nPort)
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

UsbHubNodeInfo *SysfsDeviceReader::makeHubInfo(const DeviceFacts &f, bool bRootHub)
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
    if (f.pActive && f.nActive >= 9) {
        pBlock->HubIsBusPowered = (f.pActive[7] & 0x40) ? 0 : 1;
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
        while (f.pActive && at + 9 <= f.nActive && it != f.mapAltSetting.end()) {
            const uint8_t len = f.pActive[at];
            if (len < 2)
                break;
            if (f.pActive[at + 1] == 4 && f.pActive[at + 2] == 0 && f.pActive[at + 3] == it->second
                && f.pActive[at + 7] == 2)
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

} // namespace probekit
