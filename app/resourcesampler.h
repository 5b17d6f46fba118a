#pragma once

#include <QByteArray>

// Samples the machine's memory and CPU load for the main window's readout.
// One sampler lives on the resource loop's thread.
class VxResourceSampler
{
public:
    VxResourceSampler();
    ~VxResourceSampler();
    VxResourceSampler(const VxResourceSampler &) = delete;
    VxResourceSampler &operator=(const VxResourceSampler &) = delete;

    // Physical memory in use, percent.
    float memoryLoad();
    // CPU load since the previous call, percent clamped to 100; the first
    // call has no previous sample and reports exactly 0.
    float cpuLoad();

    // Linux text parsers, exposed for tests.
    struct CpuTimes
    {
        quint64 uTotal = 0;
        quint64 uIdle = 0;
        bool bValid = false;
    };
    static CpuTimes parseProcStat(const QByteArray &text);
    // Percent in use from /proc/meminfo (MemTotal, MemAvailable); -1 if unreadable.
    static double parseMemInfo(const QByteArray &text);
    static float cpuPercent(const CpuTimes &previous, const CpuTimes &current);

private:
    struct Private;
    Private *d;
    bool m_bFirstCpuSample = true;
};
