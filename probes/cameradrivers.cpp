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

// After an install the operate thread re-runs a driver check back to back
// for up to ten minutes. A check that follows the previous one within half
// a second first waits a quarter of a second, so the polling does not spin
// a core; a check on its own (a diagnosis) runs at once.
void paceRepeatedCheck(std::atomic<qint64> &lastCallMs)
{
    static QElapsedTimer clock;
    static std::atomic<bool> bStarted{false};
    if (!bStarted.exchange(true))
        clock.start();
    const qint64 nNow = clock.elapsed();
    const qint64 nLast = lastCallMs.load();
    if (nLast > 0 && nNow - nLast < 500)
        QThread::msleep(250);
    lastCallMs = qMax<qint64>(clock.elapsed(), 1);
}

std::atomic<qint64> g_lastGige{0};
std::atomic<qint64> g_lastUsb3{0};

bool startIfFound(const QString &strScript)
{
    const QFileInfo script(strScript);
    if (!script.isFile() || !script.isReadable())
        return false;
    startInstaller(strScript);
    return true;
}

} // namespace

QString sdkFolder()
{
    return LuInterface::commonFilesPath() + QLatin1Char('/') + LuInterface::appName();
}

void gigeCheck(CDetectInfo &info)
{
    paceRepeatedCheck(g_lastGige);
    // Run twice; only the second answer is used.
    GevFilter::openProbe();
    const quint32 uResult = GevFilter::openProbe();
    info.bNormal = uResult == GevFilter::kOk ? 1 : 0;
}


bool installGige()
{
    return startIfFound(gigeInstallScript());
}

bool installUsb3()
{
    return startIfFound(usb3InstallScript());
}

} // namespace CameraDrivers
