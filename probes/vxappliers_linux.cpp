#include "vxapply.h"

#include "envvars.h"
#include "etcenvironment.h"
#include "luinterface.h"
#include "netadapters.h"
#include "repairplans.h"
#include "tuningapply.h"
#include "sdkfiles.h"
#include "vxquarantine.h"

#include <QFile>
#include <QRegularExpression>

#include <limits>

namespace VxApply {

namespace {

constexpr qint64 kMinMtu = 68;
constexpr qint64 kMaxMtu = 65535;
constexpr qint64 kMaxInt = std::numeric_limits<qint32>::max();
constexpr qint64 kMaxRing = 1 << 24;
constexpr int kMaxValueLength = 4096;

bool refuse(QString *pReason, const QString &strReason)
{
    *pReason = strReason;
    return false;
}

// A decimal number within [nMin, nMax]; an empty value passes when bAbsentOk.
bool isNumber(const QString &strValue, qint64 nMin, qint64 nMax, bool bAbsentOk = false)
{
    if (strValue.isEmpty())
        return bAbsentOk;
    static const QRegularExpression re(QStringLiteral("^[0-9]{1,10}$"));
    if (!re.match(strValue).hasMatch())
        return false;
    const qint64 nValue = strValue.toLongLong();
    return nValue >= nMin && nValue <= nMax;
}

bool isInterfaceName(const QString &strName)
{
    static const QRegularExpression re(QStringLiteral("^[A-Za-z0-9_.:@-]{1,15}$"));
    return re.match(strName).hasMatch() && strName != QLatin1String(".") && strName != QLatin1String("..");
}

// The kernel's facts of an existing interface.
bool findInterface(const NetAdapters::LinkSource &links, const QString &strName, CLinkFacts *pLink)
{
    return isInterfaceName(strName) && NetAdapters::findLink(links, strName, pLink);
}

bool isValidSysctl(const VxChange &change, QString *pReason, const NetAdapters::LinkSource &links)
{
    static const QStringList listCore = {QStringLiteral("net.core.rmem_max"), QStringLiteral("net.core.rmem_default"),
        QStringLiteral("net.core.netdev_max_backlog")};
    static const QRegularExpression reRpFilter(QStringLiteral("^net\\.ipv4\\.conf\\.([^./]+)\\.rp_filter$"));
    if (listCore.contains(change.strTarget)) {
        if (!isNumber(change.strNew, 0, kMaxInt) || !isNumber(change.strOld, 0, kMaxInt, true))
            return refuse(pReason, QStringLiteral("sysctl value out of range"));
        return true;
    }
    const QRegularExpressionMatch match = reRpFilter.match(change.strTarget);
    if (!match.hasMatch())
        return refuse(pReason, QStringLiteral("not a sysctl key the repairs set: ") + change.strTarget);
    const QString strIface = match.captured(1);
    CLinkFacts link;
    if (strIface != QLatin1String("all") && strIface != QLatin1String("default")
        && !findInterface(links, strIface, &link))
        return refuse(pReason, QStringLiteral("no such interface: ") + strIface);
    if (!isNumber(change.strNew, 0, 2) || !isNumber(change.strOld, 0, 2, true))
        return refuse(pReason, QStringLiteral("rp_filter value out of range"));
    return true;
}

// Which item may make which kind of change.
bool kindFitsItem(const QString &strKind, quint32 uItem)
{
    if (strKind == QLatin1String(VxChangeKind::SdkFile))
        return uItem == RepairPlans::kSdkFilesItem;
    if (strKind == QLatin1String(VxChangeKind::Environment))
        return uItem == RepairPlans::kEnvironmentItem;
    if (strKind == QLatin1String(VxChangeKind::Mtu))
        return uItem == RepairPlans::kJumboItem;
    if (strKind == QLatin1String(VxChangeKind::UsbfsMemory))
        return uItem == RepairPlans::kUsbBufferItem;
    if (strKind == QLatin1String(VxChangeKind::RxRing))
        return uItem == RepairPlans::kReceiveBuffersItem;
    if (strKind == QLatin1String(VxChangeKind::Sysctl))
        return uItem == RepairPlans::kReceiveBuffersItem || uItem == RepairPlans::kReversePathItem;
    return false;
}

// The value /etc/environment gives a variable; empty when it sets none.
bool readEnvironment(const VxChange &change, QString *pValue)
{
    QFile file(EtcEnvironment::filePath());
    QByteArray content;
    if (file.exists()) {
        if (!file.open(QIODevice::ReadOnly))
            return false;
        content = file.readAll();
        if (file.error() != QFile::NoError)
            return false;
    }
    *pValue = EtcEnvironment::valueOf(content, change.strTarget);
    if (pValue->isNull())
        *pValue = QLatin1String("");
    return true;
}

bool applyEnvironment(const VxChange &change, QString *pError)
{
    const bool bOk = change.strNew.isEmpty() ? EtcEnvironment::unset(change.strTarget)
                                             : EtcEnvironment::apply({{change.strTarget, change.strNew}});
    if (!bOk)
        *pError = QStringLiteral("cannot write ") + EtcEnvironment::filePath();
    return bOk;
}

bool readMtu(const NetAdapters::LinkSource &links, const VxChange &change, QString *pValue)
{
    CLinkFacts link;
    if (!findInterface(links, change.strTarget, &link))
        return false;
    *pValue = QString::number(link.nMtu);
    return true;
}

bool applyMtu(const VxChange &change, QString *pError)
{
    if (!LuInterface::isLiveRoot() || !NetAdapters::setLinkMtu(change.strTarget, change.strNew.toInt())) {
        *pError = QStringLiteral("the kernel did not take the MTU");
        return false;
    }
    NetAdapters::updateNetworkManagerMtu(change.strTarget, change.strNew.toInt());
    return true;
}

} // namespace

bool isValidChange(const VxChange &change, QString *pReason, const NetAdapters::LinkSource &links)
{
    if (!kindFitsItem(change.strKind, change.uItem))
        return refuse(pReason, QStringLiteral("not a change item %1 makes: %2").arg(change.uItem).arg(change.strKind));
    if (change.strOld == change.strNew)
        return refuse(pReason, QStringLiteral("old and new value are the same"));
    for (const QString *pValue : {&change.strTarget, &change.strOld, &change.strNew}) {
        if (pValue->size() > kMaxValueLength || pValue->contains(QChar(0)))
            return refuse(pReason, QStringLiteral("value too long or holds NUL"));
    }
    const QString &strKind = change.strKind;
    if (strKind == QLatin1String(VxChangeKind::Environment)) {
        if (!EnvVars::variableNames().contains(change.strTarget))
            return refuse(pReason, QStringLiteral("not an SDK variable: ") + change.strTarget);
        if (!EtcEnvironment::isValidValue(change.strOld) || !EtcEnvironment::isValidValue(change.strNew))
            return refuse(pReason, QStringLiteral("value holds a line break, NUL or quote"));
        return true;
    }
    if (strKind == QLatin1String(VxChangeKind::Mtu)) {
        if (!isNumber(change.strNew, kMinMtu, kMaxMtu) || !isNumber(change.strOld, kMinMtu, kMaxMtu))
            return refuse(pReason, QStringLiteral("MTU out of range"));
        CLinkFacts link;
        if (!findInterface(links, change.strTarget, &link))
            return refuse(pReason, QStringLiteral("no such interface: ") + change.strTarget);
        if (link.nMaxMtu > 0 && change.strNew.toInt() > link.nMaxMtu)
            return refuse(pReason, QStringLiteral("MTU above the driver's maximum"));
        return true;
    }
    if (strKind == QLatin1String(VxChangeKind::SdkFile)) {
        if (!SdkFiles::isRemovablePath(change.strTarget))
            return refuse(
                pReason, QStringLiteral("not an SDK library in a system library folder: ") + change.strTarget);
        const QString &strIdentity = change.strNew.isEmpty() ? change.strOld : change.strNew;
        if ((!change.strNew.isEmpty() && !change.strOld.isEmpty()) || !VxQuarantine::isValidIdentity(strIdentity))
            return refuse(pReason, QStringLiteral("an SDK file is only removed or put back"));
        return true;
    }
    if (strKind == QLatin1String(VxChangeKind::Sysctl))
        return isValidSysctl(change, pReason, links);
    if (strKind == QLatin1String(VxChangeKind::UsbfsMemory)) {
        if (change.strTarget != QLatin1String("usbfs_memory_mb"))
            return refuse(pReason, QStringLiteral("not the USB buffer memory parameter"));
        if (!isNumber(change.strNew, 0, kMaxInt) || !isNumber(change.strOld, 0, kMaxInt, true))
            return refuse(pReason, QStringLiteral("USB buffer memory out of range"));
        return true;
    }
    // rx-ring (kindFitsItem admits no other kind)
    CLinkFacts link;
    if (!findInterface(links, change.strTarget, &link))
        return refuse(pReason, QStringLiteral("no such interface: ") + change.strTarget);
    if (!isNumber(change.strNew, 1, kMaxRing) || !isNumber(change.strOld, 1, kMaxRing))
        return refuse(pReason, QStringLiteral("ring size out of range"));
    return true;
}

VxAppliers ownAppliers(const QString &strQuarantine, const NetAdapters::LinkSource &links)
{
    VxAppliers appliers;
    appliers.insert(QLatin1String(VxChangeKind::Environment), VxApplier {readEnvironment, applyEnvironment});
    const auto readLinkMtu
        = [links](const VxChange &change, QString *pValue) { return readMtu(links, change, pValue); };
    appliers.insert(QLatin1String(VxChangeKind::Mtu), VxApplier {readLinkMtu, applyMtu});
    VxApplier sdkFile;
    sdkFile.read
        = [](const VxChange &change, QString *pValue) { return VxQuarantine::identityOf(change.strTarget, pValue); };
    sdkFile.apply = [strQuarantine](const VxChange &change, QString *pError) {
        if (change.strNew.isEmpty())
            return VxQuarantine::moveIn(strQuarantine, change.strTarget, change.strOld, pError);
        return VxQuarantine::restore(strQuarantine, change.strTarget, change.strNew, pError);
    };
    appliers.insert(QLatin1String(VxChangeKind::SdkFile), sdkFile);
    // The camera host tuning settings.
    for (const char *pKind : {VxChangeKind::Sysctl, VxChangeKind::UsbfsMemory, VxChangeKind::RxRing})
        appliers.insert(QLatin1String(pKind), VxApplier {readTuningValue, applyTuningChange});
    return appliers;
}

VxAppliers systemAppliers(const QString &strQuarantine, const NetAdapters::LinkSource &links)
{
    return ownAppliers(strQuarantine, links);
}

Route systemRoute(const VxJournal &journal, const VxPrivileges &privileges, const NetAdapters::LinkSource &links)
{
    Route route;
    route.bInProcess = privileges.isRoot() || !LuInterface::isLiveRoot();
    if (route.bInProcess) {
        route.appliers = systemAppliers(journal.quarantineFolder(), links);
        route.links = links;
    } else {
        route.runHelper = [privileges](const QString &strVerb, const QStringList &listArgs) {
            return privileges.runHelper(strVerb, listArgs);
        };
    }
    return route;
}

} // namespace VxApply
