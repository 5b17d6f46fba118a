#include "rxbuffers.h"

#include "ethtoolrings.h"
#include "luinterface.h"
#include "netadapters.h"
#include "tuningapply.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

namespace RxBuffers {

namespace {

qint64 readSysctl(const QString &strKey)
{
    const QString strPath = TuningApply::sysctlPath(strKey);
    QFile file(strPath);
    if (!QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return -1;
    bool bOk = false;
    const qint64 nValue = QString::fromLatin1(file.read(64)).trimmed().toLongLong(&bOk);
    return bOk && nValue >= 0 ? nValue : -1;
}

} // namespace

void check(CRxBufferDetectInfo &info, const NetAdapters::LinkSource &links, const RingReader &rings)
{
    info.sysctls.clear();
    info.adapters.clear();
    for (const QString &strKey : sysctlKeys())
        info.sysctls.insert(strKey, readSysctl(strKey));
    // Rings come from the running kernel: with another system root they
    // are not that system's.
    info.bRingsReadable = rings || LuInterface::isLiveRoot();
    for (const CLinkFacts &link : NetAdapters::physicalLinks(links)) {
        CRxAdapter adapter;
        adapter.strName = link.strName;
        if (info.bRingsReadable) {
            CRxRing ring;
            QString strError;
            const bool bRead
                = rings ? rings(link.strName, &ring, &strError) : EthtoolRings::read(link.strName, &ring, &strError);
            if (bRead) {
                adapter.nRx = ring.uRx;
                adapter.nRxMax = ring.uRxMax;
            } else {
                adapter.strReason = strError;
            }
        }
        info.adapters << adapter;
    }
    info.bNormal = isExceptional(info) ? 0 : 1;
}

VxRepairOutcome repair(CRxBufferDetectInfo &info, const VxPrivileges &rights, const NetAdapters::LinkSource &links,
    const RingReader &rings)
{
    const VxRepairOutcome outcome = TuningApply::applyPlan(plan(info), rights, links);
    check(info, links, rings);
    return outcome;
}

} // namespace RxBuffers
