#include "portlink.h"

#include <cstdlib>

namespace probekit {

namespace {

uint32_t le32(const uint8_t *p)
{
    return uint32_t(p[0]) | (uint32_t(p[1]) << 8) | (uint32_t(p[2]) << 16) | (uint32_t(p[3]) << 24);
}

constexpr uint32_t kOperatingFlags = UsbLinkOperatingAtSuperSpeed | UsbLinkOperatingAtSuperSpeedPlus;

} // namespace

std::string childPortPath(const std::string &strHub, unsigned nPort, bool bHubIsRoot)
{
    return strHub + (bHubIsRoot ? "-" : ".") + std::to_string(nPort);
}

uint32_t speedAttributeKbps(const std::string &strSpeed)
{
    std::string s = strSpeed;
    while (!s.empty() && (s.back() == '\n' || s.back() == ' ' || s.back() == '\r'))
        s.pop_back();
    if (s == "1.5")
        return 1500;
    if (s.empty() || s.size() > 6 || s.find_first_not_of("0123456789") != std::string::npos)
        return 0;
    const unsigned long v = std::strtoul(s.c_str(), nullptr, 10);
    return v >= 1 && v <= 100000 ? uint32_t(v * 1000) : 0;
}

uint32_t speedCodeKbps(uint8_t uSpeedCode, uint32_t uFlags, uint32_t uFlagsKnown)
{
    switch (uSpeedCode) {
    case UsbSpeedLow:
        return 1500;
    case UsbSpeedFull:
        return 12000;
    case UsbSpeedHigh:
        return 480000;
    case UsbSpeedSuper:
        return (uFlagsKnown & uFlags & UsbLinkOperatingAtSuperSpeedPlus) ? 10000000 : 5000000;
    default:
        return 0;
    }
}

bool decodeConnectionInfoV2(const uint8_t *pBytes, size_t nBytes, uint32_t nPort, UsbPortLinkInfo &link)
{
    if (!pBytes || nBytes < 16 || le32(pBytes) != nPort || le32(pBytes + 4) != 16)
        return false;
    link.SupportedProtocols = le32(pBytes + 8) & 0x7;
    link.Flags = le32(pBytes + 12) & 0xF;
    link.FlagsKnown = 0xF;
    return true;
}

void completeLinkFromConnection(const UsbPortConnectionInfo &connection, UsbPortLinkInfo &link)
{
    if (link.SpeedKbps == 0)
        link.SpeedKbps = speedCodeKbps(connection.Speed, link.Flags, link.FlagsKnown);
    if (link.SpeedKbps == 0 || (link.FlagsKnown & kOperatingFlags) == kOperatingFlags)
        return;
    link.Flags &= ~kOperatingFlags;
    if (link.SpeedKbps >= 5000000)
        link.Flags |= UsbLinkOperatingAtSuperSpeed;
    if (link.SpeedKbps >= 10000000)
        link.Flags |= UsbLinkOperatingAtSuperSpeedPlus;
    link.FlagsKnown |= kOperatingFlags;
}

} // namespace probekit
