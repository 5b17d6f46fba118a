#pragma once

#include "vxrepair.h"

#include <QString>

#include <atomic>
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

// The pace of the driver status polling. After an install the operate
// thread re-runs a driver check back to back for up to ten minutes; a check
// that follows the previous one of its driver within half a second first
// waits a quarter of a second, so the polling does not spin a core. A check
// on its own (a diagnosis) runs at once. Whoever polls owns a pacer: the
// default probe table makes one for the system, tests one with a fake clock.
class PollPacer
{
public:
    enum class Driver { Gige, Usb3 };
    using Clock = std::function<qint64()>; // milliseconds
    using Sleep = std::function<void(int nMs)>;

    // The real clock and sleep where none are handed in.
    explicit PollPacer(Clock now = Clock(), Sleep sleep = Sleep());
    PollPacer(const PollPacer &) = delete;
    PollPacer &operator=(const PollPacer &) = delete;

    // Called before each check of driver: waits when the previous one was
    // less than half a second ago.
    void pace(Driver driver);

private:
    qint64 now() const;

    Clock m_now;
    Sleep m_sleep;
    std::atomic<qint64> m_lastMs[2] = {{0}, {0}}; // by Driver; 0 = none yet
};

// The checks as the operate thread polls them after an install, paced by pacer.
void pacedGigeCheck(PollPacer &pacer, CDetectInfo &info);
void pacedUsb3Check(PollPacer &pacer, CDetectInfo &info);

// Starts the installer without waiting: Done when it was found (an
// existing, readable regular file) and started, NotFound when there was no
// installer, else how the start failed.
VxRepairOutcome installGige(const VxPrivileges &rights = VxPrivileges::system());
VxRepairOutcome installUsb3(const VxPrivileges &rights = VxPrivileges::system());

// Starts a found installer (through vetrix-helper when not root).
VxRepairOutcome startInstaller(const QString &strScript, const VxPrivileges &rights = VxPrivileges::system());

} // namespace CameraDrivers
