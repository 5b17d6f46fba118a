#include "resourcesampler.h"

#include <QList>

VxResourceSampler::CpuTimes VxResourceSampler::parseProcStat(const QByteArray &text)
{
    CpuTimes times;
    const int nEnd = text.indexOf('\n');
    const QByteArray line = text.left(nEnd < 0 ? text.size() : nEnd).simplified();
    const QList<QByteArray> fields = line.split(' ');
    // "cpu user nice system idle iowait irq softirq steal guest guest_nice";
    // guest time is already counted in user time.
    if (fields.size() < 5 || fields.first() != "cpu")
        return times;
    for (int i = 1; i < fields.size() && i <= 8; ++i) {
        bool bOk = false;
        const quint64 uValue = fields.at(i).toULongLong(&bOk);
        if (!bOk)
            return CpuTimes();
        times.uTotal += uValue;
        if (i == 4 || i == 5) // idle, iowait
            times.uIdle += uValue;
    }
    times.bValid = true;
    return times;
}

double VxResourceSampler::parseMemInfo(const QByteArray &text)
{
    qint64 nTotal = -1;
    qint64 nAvailable = -1;
    for (const QByteArray &line : text.split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 2)
            continue;
        bool bOk = false;
        const qint64 nValue = fields.at(1).toLongLong(&bOk);
        if (!bOk)
            continue;
        if (fields.first() == "MemTotal:")
            nTotal = nValue;
        else if (fields.first() == "MemAvailable:")
            nAvailable = nValue;
    }
    if (nTotal <= 0 || nAvailable < 0 || nAvailable > nTotal)
        return -1.0;
    return (1.0 - double(nAvailable) / double(nTotal)) * 100.0;
}

float VxResourceSampler::cpuPercent(const CpuTimes &previous, const CpuTimes &current)
{
    if (!previous.bValid || !current.bValid || current.uTotal <= previous.uTotal)
        return 0.0f;
    const quint64 uTotal = current.uTotal - previous.uTotal;
    const quint64 uIdle = current.uIdle >= previous.uIdle ? current.uIdle - previous.uIdle : 0;
    const double dBusy = uIdle >= uTotal ? 0.0 : double(uTotal - uIdle) * 100.0 / double(uTotal);
    return float(qMin(dBusy, 100.0));
}
