#pragma once

// What one USB device directory of sysfs tells, and the records made of it.

#include "arena.h"
#include "probekit.h"

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace probekit {

class FsSource;

std::string trimmed(std::string s);
bool parseNumber(const std::string &strText, int nBase, unsigned long &uOut);
// Speed attribute (Mbit/s) to the speed code; UsbSpeedUnknown when it names none.
uint8_t speedCode(const std::string &strSpeed);
std::string bcdVersion(uint16_t bcd);

// What one USB device directory tells about the device.
struct DeviceFacts
{
    std::string strDir;  // "/sys/devices/.../1-1"
    std::string strName; // "1-1" or "usb1"
    std::string strDescriptors;
    bool bHaveDd = false;
    UsbDeviceDescriptor dd{};
    // The configuration shown: the one at index 0 (the first after the
    // device descriptor), as the Windows reader asks for it.
    const uint8_t *pConfig = nullptr;
    size_t nConfig = 0;
    // The active configuration (bConfigurationValue): open pipes, current
    // alternate settings and the strings sysfs keeps belong to it.
    const uint8_t *pActive = nullptr;
    size_t nActive = 0;
    uint8_t uSpeed = UsbSpeedUnknown;
    uint32_t uSpeedKbps = 0; // 0: unknown
    uint16_t uDevNum = 0;
    uint8_t uConfigValue = 0;
    unsigned nPorts = 0;
    bool bHub = false;
    std::map<unsigned, unsigned> mapAltSetting;     // interface -> current alternate setting
    std::vector<std::pair<uint32_t, std::string>> vecStrings; // index -> text
    uint16_t uLanguage = 0; // LANGID of the strings; 0: not known
};

// Reads device directories and turns their facts into tree records.
class SysfsDeviceReader
{
public:
    SysfsDeviceReader(FsSource &fs, Arena &arena)
        : m_fs(fs), m_arena(arena)
    {
    }
    std::string attr(const std::string &strDir, const char *pName);
    bool attrNumber(const std::string &strDir, const char *pName, int nBase, unsigned long &uOut);
    void readDevice(DeviceFacts &facts, bool bRootHub);
    UsbHubNodeInfo *makeHubInfo(const DeviceFacts &facts, bool bRootHub);
    // null facts: an empty port
    UsbPortConnectionInfo *makeConnectionInfo(const DeviceFacts *pFacts, unsigned nPort);
    UsbDescriptorRequest *makeConfigRequest(const DeviceFacts &facts, unsigned nPort);
    UsbStringDescriptorNode *makeStrings(const DeviceFacts &facts);
    // The link facts: the port path, the speed and the flags it and bcdUSB tell.
    UsbPortLinkInfo *makeLinkInfo(const DeviceFacts &facts, const std::string &strPortPath);

private:
    // Whether the device nodes of usbfs exist (looked at once per reader).
    bool hasUsbfs();

    FsSource &m_fs;
    Arena &m_arena;
    int m_nUsbfs = -1;
};

} // namespace probekit
