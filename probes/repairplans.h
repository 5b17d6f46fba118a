#pragma once

#include "netadapters.h"
#include "vxchange.h"

class CEnvDetectInfo;
class CJumboPacketDetectInfo;
class CSDKPathDetectInfo;

// The plans of the repairs: what each would change, worked out from the
// item's record and the machine's current values, without changing anything.
// On Windows, whose repairs are not journaled, every plan is empty.
namespace RepairPlans {

// The items whose changes plans hold.
inline constexpr quint32 kSdkFilesItem = 1;
inline constexpr quint32 kEnvironmentItem = 2;
inline constexpr quint32 kJumboItem = 256;
inline constexpr quint32 kUsbBufferItem = 4096;
inline constexpr quint32 kReceiveBuffersItem = 8192;
inline constexpr quint32 kReversePathItem = 16384;

// One change per variable the repair writes into /etc/environment: old is
// the file's value (empty: not set), new the value EnvVars::plannedWrites()
// gives.
VxPlan environmentPlan(const CEnvDetectInfo &info);

// One change per adapter the record shows off (state 0) whose driver offers
// a larger MTU: from its current MTU (as links gives it) to the largest.
VxPlan jumboPlan(
    const CJumboPacketDetectInfo &info, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// One change per SDK library found: from its identity (content hash, or link
// target) to absent, which moves it to the quarantine.
VxPlan sdkFilesPlan(const CSDKPathDetectInfo &info);

} // namespace RepairPlans
