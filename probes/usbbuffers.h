#pragma once

#include "cdetectinfo.h"
#include "vxchange.h"
#include "vxrepair.h"

#include <QJsonObject>
#include <QStringList>

// Item 4096 "USB buffer memory": whether the host gives USB3 Vision cameras
// room for their transfers. Linux: usbcore's usbfs_memory_mb (all user-space
// USB transfers share it; 16 MB by default) below 1000 MB is exceptional when
// a USB3 Vision camera or a USB 3 controller is present; 0 means unlimited.
// Windows: USB selective suspend enabled in the active power plan (it
// suspends an idle-looking camera between frames).
class CUsbBufferDetectInfo : public CDetectInfo
{
public:
    CUsbBufferDetectInfo() { nItem = 4096; }
    ~CUsbBufferDetectInfo() override;

    // Linux
    int nUsbfsMemoryMb = -1; // -1: usbcore's parameter cannot be read
    QStringList usb3Controllers; // root hubs of 5 Gbit/s or more ("usb2")
    QStringList usb3Cameras; // devices with a USB3 Vision interface ("2-1")

    // Windows: the setting read is the power plan's (set by check())
    bool bPowerPlan = false;
    int nSelectiveSuspend = -1; // 1 enabled, 0 disabled, -1 cannot be read
    QString strPowerScheme; // the active power plan's GUID
    QString strPowerSchemeName; // and its name, where known
};

namespace UsbBuffers {

constexpr quint32 kItemId = 4096;
// The usbfs memory a USB3 Vision camera streaming at full rate needs.
constexpr int kRecommendedMb = 1000;

// Reads the setting (and on Linux what USB 3 hardware is present) and
// grades it.
void check(CUsbBufferDetectInfo &info);

// Whether the record is exceptional by the rules above (what check() sets).
bool isExceptional(const CUsbBufferDetectInfo &info);

// The changes the repair makes: usbfs_memory_mb to 1000 (Linux), selective
// suspend off for the active plan (Windows); empty when normal.
VxPlan plan(const CUsbBufferDetectInfo &info);

// Makes the plan's changes, then checks again. Windows: selective suspend
// off in the active plan (mains and battery). Linux: the usbfs change when
// running as root (TuningApply::applyPlan); a user's optimisation applies
// the plan through the journal and the helper instead.
VxRepairOutcome repair(CUsbBufferDetectInfo &info, const VxPrivileges &rights);

// The change kind of the Windows repair: target the power plan's GUID,
// value 1 (enabled) or 0 (disabled).
inline constexpr char kSelectiveSuspendKind[] = "usb-selective-suspend";

} // namespace UsbBuffers

// One line per finding (context "VxOneKeyResult").
QStringList usbBufferLines(const CUsbBufferDetectInfo &info);
// The record's facts for the JSON report.
QJsonObject usbBufferFacts(const CUsbBufferDetectInfo &info);
