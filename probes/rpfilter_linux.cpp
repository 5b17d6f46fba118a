#include "rpfilter.h"

#include "netadapters.h"
#include "tuningapply.h"

#include <QFile>
#include <QFileInfo>

namespace RpFilter {

namespace {

int readValue(const QString &strInterface)
{
    const QString strPath = TuningApply::sysctlPath(QStringLiteral("net.ipv4.conf.%1.rp_filter").arg(strInterface));
    QFile file(strPath);
    if (strPath.isEmpty() || !QFileInfo(strPath).isFile() || !file.open(QIODevice::ReadOnly))
        return -1;
    bool bOk = false;
    const int nValue = QString::fromLatin1(file.read(16)).trimmed().toInt(&bOk);
    return bOk && nValue >= 0 && nValue <= 2 ? nValue : -1;
}

} // namespace

void check(CRpFilterDetectInfo &info, const NetAdapters::LinkSource &links)
{
    info.bApplicable = true;
    info.adapters.clear();
    info.nAll = readValue(QStringLiteral("all"));
    for (const CLinkFacts &link : NetAdapters::physicalLinks(links))
        info.adapters.insert(link.strName, readValue(link.strName));
    info.bNormal = isExceptional(info) ? 0 : 1;
}

VxRepairOutcome repair(CRpFilterDetectInfo &info, const VxPrivileges &rights, const NetAdapters::LinkSource &links)
{
    const VxRepairOutcome outcome = TuningApply::applyPlan(plan(info), rights, links);
    check(info, links);
    return outcome;
}

} // namespace RpFilter
