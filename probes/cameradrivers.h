#pragma once

#include "vxrepair.h"

#include <QString>

#include <functional>

class CDetectInfo;

// Items 4 and 8: the SDK's GigE Vision filter driver and USB3 Vision driver.
namespace CameraDrivers {

// The SDK folder: commonFilesPath() + "/" + appName().
QString sdkFolder();
// The install scripts and the file whose presence says the USB3 Vision
// driver is installed, on this platform.
QString gigeInstallScript();
QString usb3InstallScript();

// bNormal = the filter driver's device opens (the open probe runs twice,
// the second answer counts).
void gigeCheck(CDetectInfo &info);
// bNormal = the USB3 Vision driver is installed.
void usb3Check(CDetectInfo &info);

// The same checks as the operate thread polls them after an install: a check
// that follows the previous one of its driver within half a second first
// waits a quarter of a second, so the polling does not spin a core.
void pacedGigeCheck(CDetectInfo &info);
void pacedUsb3Check(CDetectInfo &info);
// The clock (milliseconds) and the sleep of that pacing; tests install fake
// ones, null restores the real ones.
void setPollTiming(std::function<qint64()> now, std::function<void(int)> sleep);

// Starts the installer without waiting: Done when it was found (an
// existing, readable regular file) and started, NotFound when there was no
// installer, else how the start failed.
VxRepairOutcome installGige(const VxPrivileges &rights = VxPrivileges::system());
VxRepairOutcome installUsb3(const VxPrivileges &rights = VxPrivileges::system());

// Starts a found installer (through vetrix-helper when not root).
VxRepairOutcome startInstaller(const QString &strScript, const VxPrivileges &rights = VxPrivileges::system());

} // namespace CameraDrivers
