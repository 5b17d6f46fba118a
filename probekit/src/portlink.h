#pragma once

// The link facts of a port (UsbPortLinkInfo): port paths, negotiated speed
// and the SuperSpeed flags, decoded the same way on every platform.

#include "probekit.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace probekit {

// The port path of port nPort below a hub whose path is strHub: below a root
// hub ("3") "3-1", below an external hub ("3-1") "3-1.2".
std::string childPortPath(const std::string &strHub, unsigned nPort, bool bHubIsRoot);

// Linux speed attribute (Mbit/s: "1.5", "12", "480", "5000", "10000",
// "20000") in kbit/s; 0 when it is missing or names no speed.
uint32_t speedAttributeKbps(const std::string &strSpeed);

// The speed of a speed code (UsbDeviceSpeed) in kbit/s; a SuperSpeed link
// that the flags say runs at SuperSpeedPlus counts 10 Gbit/s. 0: unknown.
uint32_t speedCodeKbps(uint8_t uSpeedCode, uint32_t uFlags, uint32_t uFlagsKnown);

// The reply of the hub's IOCTL_USB_GET_NODE_CONNECTION_INFORMATION_EX_V2
// (ConnectionIndex, Length, SupportedUsbProtocols, Flags: four 32-bit
// little-endian words). Fills the protocols and flags of link and returns
// true when the reply is whole, is for nPort and says its own length;
// otherwise leaves link as it is.
bool decodeConnectionInfoV2(const uint8_t *pBytes, size_t nBytes, uint32_t nPort, UsbPortLinkInfo &link);

// Completes link from the connection facts: the speed from the speed code
// (and the flags when known), and the operating flags the speed tells.
void completeLinkFromConnection(const UsbPortConnectionInfo &connection, UsbPortLinkInfo &link);

} // namespace probekit
