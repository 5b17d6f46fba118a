// Memory from /proc/meminfo (MemAvailable), CPU from the first line of
// /proc/stat, read below the system root.
#include "resourcesampler.h"

#include "luinterface.h"

#include <QFile>

struct VxResourceSampler::Private
{
    CpuTimes previous;
};

namespace {
QByteArray readProcFile(const char *pPath)
{
    QFile file(LuInterface::sysPath(QString::fromLatin1(pPath)));
    if (!file.open(QIODevice::ReadOnly))
        return QByteArray();
    return file.read(64 * 1024); // proc files report no size; read what comes
}
} // namespace

VxResourceSampler::VxResourceSampler()
    : d(new Private)
{
}

VxResourceSampler::~VxResourceSampler()
{
    delete d;
}

float VxResourceSampler::memoryLoad()
{
    const double dLoad = parseMemInfo(readProcFile("/proc/meminfo"));
    return dLoad < 0.0 ? 0.0f : float(dLoad);
}

float VxResourceSampler::cpuLoad()
{
    const CpuTimes current = parseProcStat(readProcFile("/proc/stat"));
    float fLoad = 0.0f;
    if (m_bFirstCpuSample)
        m_bFirstCpuSample = false;
    else
        fLoad = cpuPercent(d->previous, current);
    d->previous = current;
    return fLoad;
}
