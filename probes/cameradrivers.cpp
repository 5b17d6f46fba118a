#include "cameradrivers.h"

#include "cdetectinfo.h"
#include "gevfilterclient.h"
#include "luinterface.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

#include <atomic>

namespace CameraDrivers {

namespace {

struct PollTiming
{
    std::function<qint64()> now;
    std::function<void(int)> sleep;
};

qint64 realNow()
{
    static const QElapsedTimer clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    return clock.elapsed();
}

PollTiming &pollTiming()
{
    static PollTiming timing;
    return timing;
}

// After an install the operate thread re-runs a driver check back to back
// for up to ten minutes. A check that follows the previous one within half
// a second first waits a quarter of a second, so the polling does not spin
// a core; a check on its own (a diagnosis) runs at once.
void paceRepeatedCheck(std::atomic<qint64> &lastCallMs)
{
    const PollTiming &timing = pollTiming();
    const auto now = [&timing] { return timing.now ? timing.now() : realNow(); };
    const qint64 nNow = now();
    const qint64 nLast = lastCallMs.load();
    if (nLast > 0 && nNow - nLast < 500) {
        if (timing.sleep)
            timing.sleep(250);
        else
            QThread::msleep(250);
    }
    lastCallMs = qMax<qint64>(now(), 1);
}

std::atomic<qint64> g_lastGige{0};
std::atomic<qint64> g_lastUsb3{0};

VxRepairOutcome startIfFound(const QString &strScript, const VxPrivileges &rights)
{
    const QFileInfo script(strScript);
    if (!script.isFile() || !script.isReadable())
        return VxRepairOutcome(VxRepairStatus::NotFound, strScript);
    return startInstaller(strScript, rights);
}

} // namespace

QString sdkFolder()
{
    return LuInterface::commonFilesPath() + QLatin1Char('/') + LuInterface::appName();
}

void setPollTiming(std::function<qint64()> now, std::function<void(int)> sleep)
{
    pollTiming() = {std::move(now), std::move(sleep)};
}

void pacedGigeCheck(CDetectInfo &info)
{
    paceRepeatedCheck(g_lastGige);
    gigeCheck(info);
}

void pacedUsb3Check(CDetectInfo &info)
{
    paceRepeatedCheck(g_lastUsb3);
    usb3Check(info);
}

void gigeCheck(CDetectInfo &info)
{
    // Run twice; only the second answer is used.
    GevFilter::openProbe();
    const quint32 uResult = GevFilter::openProbe();
    info.bNormal = uResult == GevFilter::kOk ? 1 : 0;
}

VxRepairOutcome installGige(const VxPrivileges &rights)
{
    return startIfFound(gigeInstallScript(), rights);
}

VxRepairOutcome installUsb3(const VxPrivileges &rights)
{
    return startIfFound(usb3InstallScript(), rights);
}

} // namespace CameraDrivers
