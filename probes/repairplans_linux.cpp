#include "repairplans.h"

#include "cdetectinfo.h"
#include "envvars.h"
#include "etcenvironment.h"
#include "netadapters.h"
#include "vxquarantine.h"

#include <QFile>

namespace RepairPlans {

VxPlan environmentPlan(const CEnvDetectInfo &info)
{
    QByteArray content;
    QFile file(EtcEnvironment::filePath());
    if (file.open(QIODevice::ReadOnly))
        content = file.readAll();
    VxPlan plan;
    for (const auto &write : EnvVars::plannedWrites(info)) {
        const QString strOld = EtcEnvironment::valueOf(content, write.first);
        if (strOld == write.second)
            continue;
        plan << VxChange {kEnvironmentItem, QLatin1String(VxChangeKind::Environment), write.first,
            strOld.isNull() ? QLatin1String("") : strOld, write.second};
    }
    return plan;
}

VxPlan jumboPlan(const CJumboPacketDetectInfo &info, const NetAdapters::LinkSource &links)
{
    VxPlan plan;
    const QList<CLinkFacts> listLinks = links.allLinks();
    for (auto it = info.jumboStates.cbegin(); it != info.jumboStates.cend(); ++it) {
        if (it.value() != 0)
            continue;
        for (const CLinkFacts &link : listLinks) {
            if (link.strName != it.key() || link.nMaxMtu <= link.nMtu)
                continue;
            plan << VxChange {kJumboItem, QLatin1String(VxChangeKind::Mtu), link.strName, QString::number(link.nMtu),
                QString::number(link.nMaxMtu)};
        }
    }
    return plan;
}

VxPlan sdkFilesPlan(const CSDKPathDetectInfo &info)
{
    VxPlan plan;
    for (auto it = info.foundFiles.cbegin(); it != info.foundFiles.cend(); ++it) {
        for (const QString &strDir : it.value()) {
            if (strDir.isEmpty())
                continue;
            const QString strPath = (strDir == QLatin1String("/") ? QString() : strDir) + QLatin1Char('/') + it.key();
            QString strIdentity;
            if (!VxQuarantine::identityOf(strPath, &strIdentity) || strIdentity.isEmpty())
                continue; // gone or unreadable since the check
            plan << VxChange {kSdkFilesItem, QLatin1String(VxChangeKind::SdkFile), strPath, strIdentity, QString()};
        }
    }
    return plan;
}

} // namespace RepairPlans
