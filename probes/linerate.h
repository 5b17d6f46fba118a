#pragma once

#include "netadapters.h"

class CNetworkSpeedDetectInfo;

// Item 128: the line rate of every connected physical network adapter.
namespace LineRate {

// The value adapterSpeeds holds for an adapter whose driver does not report
// a speed (virtual NICs, some USB adapters): shown as unknown, never as slow.
constexpr int kUnknownSpeed = -1;

// Rebuilds adapterSpeeds (interface name -> Mbit/s or kUnknownSpeed); the
// item is exceptional when a known rate is below 1000 Mbit/s. A machine with
// no physical adapter is normal with an empty map; one whose interfaces
// cannot be read at all is exceptional. Linux reads the adapters of links;
// Windows lists its own.
void check(CNetworkSpeedDetectInfo &info, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

} // namespace LineRate
