// The SDK group: stray SDK libraries and the SDK's environment variables.
#include "itemrows.h"

#include "cdetectinfo.h"
#include "envvars.h"
#include "journaledrepairs.h"
#include "repairplans.h"
#include "sdkfiles.h"

#include <QJsonArray>

namespace {
using VxItemText::translated;

QStringList sdkFileLines(const CDetectInfo &info)
{
    QStringList lines;
    lines << (info.bNormal ? translated(QT_TRANSLATE_NOOP("VxOneKeyResult", " No other SDK files were found"))
                           : translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "The Other SDK Files :")));
    if (auto *pSdk = dynamic_cast<const CSDKPathDetectInfo *>(&info))
        VxItemText::appendDirectoryLines(lines, pSdk->foundFiles);
    return lines;
}

QJsonObject sdkFileFacts(const CDetectInfo &info)
{
    QJsonObject object;
    if (auto *p = dynamic_cast<const CSDKPathDetectInfo *>(&info))
        object.insert(QStringLiteral("foundFiles"), VxItemFacts::listMap(p->foundFiles));
    return object;
}

VxItemProbes sdkFileProbes(const VxPrivileges &rights)
{
    VxItemProbes probes;
    probes.check = vxCheck(SdkFiles::check);
    probes.repair =
        vxRepair([rights](CSDKPathDetectInfo &info) { return JournaledRepairs::repairSdkFiles(info, rights); });
    probes.plan = vxPlan(RepairPlans::sdkFilesPlan);
    return probes;
}

QStringList envLines(const CDetectInfo &info)
{
    QStringList lines;
    auto *pEnv = dynamic_cast<const CEnvDetectInfo *>(&info);
    const bool bPending = pEnv && !pEnv->pendingValues.isEmpty();
    if (!info.bNormal)
        lines << translated(
            QT_TRANSLATE_NOOP("VxOneKeyResult", "The following environment variables are exceptional:"));
    else if (!bPending)
        lines << translated(QT_TRANSLATE_NOOP("VxOneKeyResult", "Environment Variables are correct"));
    if (!pEnv)
        return lines;
    for (auto it = pEnv->missingValues.cbegin(); it != pEnv->missingValues.cend(); ++it) {
        for (const QString &strValue : it.value()) {
            if (!strValue.isEmpty())
                lines << QStringLiteral("    ") + it.key() + QLatin1Char('=') + strValue;
        }
    }
    // Set machine-wide by an earlier repair, not yet seen by this login.
    if (bPending) {
        lines << translated(QT_TRANSLATE_NOOP(
            "VxOneKeyResult", "The following environment variables are set and take effect at the next login:"));
        for (auto it = pEnv->pendingValues.cbegin(); it != pEnv->pendingValues.cend(); ++it)
            lines << QStringLiteral("    ") + it.key() + QLatin1Char('=') + it.value();
    }
    return lines;
}

QJsonObject envFacts(const CDetectInfo &info)
{
    QJsonObject object;
    if (auto *p = dynamic_cast<const CEnvDetectInfo *>(&info)) {
        object.insert(QStringLiteral("currentValues"), VxItemFacts::stringMap(p->currentValues));
        object.insert(QStringLiteral("missingValues"), VxItemFacts::listMap(p->missingValues));
        object.insert(QStringLiteral("pendingValues"), VxItemFacts::stringMap(p->pendingValues));
    }
    return object;
}

VxItemProbes envProbes(const VxPrivileges &rights)
{
    VxItemProbes probes;
    probes.check = vxCheck(EnvVars::check);
    probes.repair =
        vxRepair([rights](CEnvDetectInfo &info) { return JournaledRepairs::repairEnvironment(info, rights); });
    probes.plan = vxPlan(RepairPlans::environmentPlan);
    return probes;
}
} // namespace

namespace VxItemText {
void appendDirectoryLines(QStringList &lines, const QMap<QString, QStringList> &mapFound)
{
    for (auto it = mapFound.cbegin(); it != mapFound.cend(); ++it) {
        for (const QString &strDir : it.value()) {
            if (!strDir.isEmpty())
                lines << QStringLiteral("    ") + strDir + QLatin1Char('/') + it.key();
        }
    }
}
} // namespace VxItemText

namespace VxItemFacts {
QJsonObject stringMap(const QMap<QString, QString> &map)
{
    QJsonObject object;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        object.insert(it.key(), it.value());
    return object;
}

QJsonObject listMap(const QMap<QString, QStringList> &map)
{
    QJsonObject object;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        object.insert(it.key(), QJsonArray::fromStringList(it.value()));
    return object;
}

QJsonObject strings(std::initializer_list<std::pair<const char *, QString>> fields)
{
    QJsonObject object;
    for (const auto &field : fields)
        object.insert(QLatin1String(field.first), field.second);
    return object;
}

QJsonObject intMap(const QMap<QString, int> &map)
{
    QJsonObject object;
    for (auto it = map.cbegin(); it != map.cend(); ++it)
        object.insert(it.key(), it.value());
    return object;
}
} // namespace VxItemFacts

QVector<VxItemRow> sdkItemRows()
{
    auto sdk = recordRow<CSDKPathDetectInfo>(
        VxItems::SdkFiles, QT_TRANSLATE_NOOP("VxOneKeyResult", "SDK File Saving Path"), VxItems::SdkGroup, 1, 1);
    sdk.nOptimizeRank = 1;
    sdk.button = {VxItems::BtnNormal, false, VxItems::BtnCheckAndClear, true};
    sdk.action = VxRowAction::RepairDialog;
    sdk.repair = VxRepairKind::Repair;
    // The clear marks the item normal whatever it removed; where a failed
    // removal must show, a fresh check finds the files still on disk.
    sdk.recheck = VxRecheck::AfterFailedStep;
    // Stray libraries make the SDK load the wrong code: the only serious one.
    sdk.exceptionSeverity = VxItems::SeveritySerious;
    sdk.defaultProbes = sdkFileProbes;
    sdk.lines = sdkFileLines;
    sdk.facts = sdkFileFacts;

    auto env = recordRow<CEnvDetectInfo>(VxItems::EnvVariables,
        QT_TRANSLATE_NOOP("VxOneKeyResult", "SDK Environment Variables"), VxItems::SdkGroup, 2, 2);
    env.nOptimizeRank = 2;
    env.button = {VxItems::BtnCheck, true, VxItems::BtnCheckAndRepair, true};
    env.action = VxRowAction::RepairDialog;
    env.repair = VxRepairKind::Repair;
    env.recheck = VxRecheck::Always;
    env.defaultProbes = envProbes;
    env.lines = envLines;
    env.facts = envFacts;
    return {sdk, env};
}
