#include "cameradrivers.h"

#include "cdetectinfo.h"
#include "gevfilterclient.h"
#include "luinterface.h"

#include <QElapsedTimer>
#include <QFileInfo>
#include <QThread>

namespace CameraDrivers {

namespace {

qint64 realNow()
{
    static const QElapsedTimer clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    return clock.elapsed();
}

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

PollPacer::PollPacer(Clock now, Sleep sleep)
    : m_now(std::move(now))
    , m_sleep(std::move(sleep))
{
}

qint64 PollPacer::now() const
{
    return m_now ? m_now() : realNow();
}

void PollPacer::pace(Driver driver)
{
    std::atomic<qint64> &lastMs = m_lastMs[driver == Driver::Gige ? 0 : 1];
    const qint64 nNow = now();
    const qint64 nLast = lastMs.load();
    if (nLast > 0 && nNow - nLast < 500) {
        if (m_sleep)
            m_sleep(250);
        else
            QThread::msleep(250);
    }
    lastMs = qMax<qint64>(now(), 1);
}

void pacedGigeCheck(PollPacer &pacer, CDetectInfo &info)
{
    pacer.pace(PollPacer::Driver::Gige);
    gigeCheck(info);
}

void pacedUsb3Check(PollPacer &pacer, CDetectInfo &info)
{
    pacer.pace(PollPacer::Driver::Usb3);
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
