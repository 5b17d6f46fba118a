// The USB tree from Linux sysfs: USB host controllers (PCI class 0x0c03xx,
// and others through their root hubs' links on the USB bus), their root hubs
// usbN, and below each hub one node per port: the device directory
// B-P[.P...] when something is connected, an empty port otherwise. Paths are
// built from names; the walk follows no links but the controller links it
// starts from.
#include "treebuilder.h"

#include "fssource.h"
#include "idsfile.h"
#include "sysfsdevice.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

namespace probekit {

namespace {

class SysfsTreeBuilder
{
public:
    SysfsTreeBuilder(FsSource &fs, Arena &arena)
        : m_fs(fs), m_arena(arena), m_reader(fs, arena)
    {
    }
    void build(UsbRootItem *pRoot);

private:
    void addController(ChildAppender &list, const std::string &strDir, const std::string &strKey,
                       const std::string &strName, uint32_t uIds, uint32_t uSubSys, uint32_t uRevision,
                       const std::vector<std::string> &vecBusNames);
    std::string resolveLink(const std::string &strLink);
    void addHubPorts(UsbTreeItem *pHubItem, const DeviceFacts &hub, int nDepth);
    bool countNode() { return ++m_nNodes <= kMaxNodes; }

    FsSource &m_fs;
    Arena &m_arena;
    SysfsDeviceReader m_reader;
    unsigned m_nNodes = 0;
};

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
            pInfo->pConnectionInfo = m_reader.makeConnectionInfo(nullptr, nPort);
            list.add("[Port" + std::to_string(nPort) + "] NoDeviceConnected", pInfo);
            continue;
        }
        m_reader.readDevice(f, false);
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
            UsbHubNodeInfo *pInfo = m_reader.makeHubInfo(f, false);
            if (!pInfo)
                return;
            pInfo->pConnectionInfo = m_reader.makeConnectionInfo(&f, nPort);
            pInfo->pConfigDesc = m_reader.makeConfigRequest(f, nPort);
            pInfo->pStringDescs = m_reader.makeStrings(f);
            pInfo->pLinkInfo = m_reader.makeLinkInfo(f, f.strName);
            if (UsbTreeItem *pItem = list.add(strName, pInfo))
                addHubPorts(pItem, f, nDepth + 1);
        } else {
            auto *pInfo = m_arena.make<UsbDeviceNodeInfo>();
            if (!pInfo)
                return;
            pInfo->Kind = UsbNodeDevice;
            pInfo->pConnectionInfo = m_reader.makeConnectionInfo(&f, nPort);
            pInfo->pConfigDesc = m_reader.makeConfigRequest(f, nPort);
            pInfo->pStringDescs = m_reader.makeStrings(f);
            pInfo->pLinkInfo = m_reader.makeLinkInfo(f, f.strName);
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
    const std::string strDriver = resolveLink(strDir + "/driver");
    if (!strDriver.empty())
        pInfo->pDriverName = m_arena.wide(strDriver.substr(strDriver.rfind('/') + 1));
    if (uIds != 0) // a PCI controller: its key is its address
        pInfo->pPciAddress = m_arena.wide(strKey);
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
        m_reader.readDevice(f, true);
        UsbHubNodeInfo *pHub = m_reader.makeHubInfo(f, true);
        if (!pHub)
            return;
        pHub->pLinkInfo = m_reader.makeLinkInfo(f, std::to_string(bus.first));
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
        if (!m_reader.attrNumber(strDir, "class", 16, uClass) || (uClass >> 8) != 0x0c03)
            continue;
        m_reader.attrNumber(strDir, "vendor", 16, uVendor);
        m_reader.attrNumber(strDir, "device", 16, uDevice);
        m_reader.attrNumber(strDir, "subsystem_vendor", 16, uSubVendor);
        m_reader.attrNumber(strDir, "subsystem_device", 16, uSubDevice);
        m_reader.attrNumber(strDir, "revision", 16, uRevision);
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
        // A link that leads to no root hub of that name (gone during the walk)
        // adds no controller.
        const std::string strParent = strReal.substr(0, slash);
        if (strReal.compare(slash + 1, std::string::npos, strName) != 0 || !m_fs.isDir(strReal, false))
            continue;
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
