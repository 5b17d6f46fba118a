#pragma once

#include "vxrepair.h"

#include <QString>

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

// Starts the installer without waiting; true when it was found (an existing,
// readable regular file) and started.
bool installGige();
bool installUsb3();

// Starts a found installer (through vetrix-helper when not root).
bool startInstaller(const QString &strScript);

} // namespace CameraDrivers
