#pragma once

#include "netadapters.h"
#include "vxrepair.h"

#include <QString>

class CJumboPacketDetectInfo;

// Item 256: jumbo frames on every connected physical network adapter.
namespace JumboFrame {

// Rebuilds the adapter list (Linux: from the connected physical adapters of
// links) and fills the record's two maps (keyed by the adapter's
// description); normal when the list is not empty and no adapter is off. An
// adapter whose driver offers no jumbo MTU (state 2) is listed and does not
// fail the item.
void check(CJumboPacketDetectInfo &info, const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

// Switches one adapter's jumbo frames on (the largest MTU its driver
// offers) or off (the standard 1500 bytes). The MTU applies at once.
VxRepairStatus setJumbo(const QString &strDriverKey, bool bEnable, const VxPrivileges &rights = VxPrivileges::system());

// Restarts the adapters that are off in the current adapter list so that a
// new setting applies (nothing to do on Linux, where an MTU applies at once).
void restartAdapters();

// The item's repair: enables jumbo frames on exactly the adapters that were
// off, then checks again with links. Returns the first failure, or Done.
VxRepairOutcome repair(CJumboPacketDetectInfo &info, const VxPrivileges &rights = VxPrivileges::system(),
    const NetAdapters::LinkSource &links = NetAdapters::LinkSource::system());

} // namespace JumboFrame
