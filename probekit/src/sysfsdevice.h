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
// Speed attribute (Mbit/s) to the speed code.
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

private:
    FsSource &m_fs;
    Arena &m_arena;
};

} // namespace probekit
