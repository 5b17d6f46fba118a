#include "rxbuffers.h"

#include <QCoreApplication>
#include <QJsonArray>

CRxBufferDetectInfo::~CRxBufferDetectInfo() = default;

namespace {

bool sysctlLow(const QString &strKey, qint64 nValue)
{
    return nValue >= 0 && nValue < RxBuffers::minimumOf(strKey);
}

bool ringLow(const CRxAdapter &adapter)
{
    return adapter.nRx >= 0 && adapter.nRxMax > 0 && adapter.nRx < adapter.nRxMax;
}

} // namespace

namespace RxBuffers {

QStringList sysctlKeys()
{
    return {QStringLiteral("net.core.rmem_max"), QStringLiteral("net.core.rmem_default"),
        QStringLiteral("net.core.netdev_max_backlog")};
}

qint64 minimumOf(const QString &strKey)
{
    return strKey == QLatin1String("net.core.netdev_max_backlog") ? kMinimumBacklog : kMinimumRmem;
}

bool isExceptional(const CRxBufferDetectInfo &info)
{
    for (auto it = info.sysctls.cbegin(); it != info.sysctls.cend(); ++it) {
        if (sysctlLow(it.key(), it.value()))
            return true;
    }
    for (const CRxAdapter &adapter : info.adapters) {
        if (ringLow(adapter) || adapter.nInterruptModeration == 0)
            return true;
    }
    return false;
}

VxPlan plan(const CRxBufferDetectInfo &info)
{
    VxPlan changes;
    for (const QString &strKey : sysctlKeys()) {
        const qint64 nValue = info.sysctls.value(strKey, -1);
        if (!sysctlLow(strKey, nValue))
            continue;
        VxChange change;
        change.uItem = kItemId;
        change.strKind = QLatin1String(VxChangeKind::Sysctl);
        change.strTarget = strKey;
        change.strOld = QString::number(nValue);
        change.strNew = QString::number(minimumOf(strKey));
        changes << change;
    }
    for (const CRxAdapter &adapter : info.adapters) {
        const bool bWindows = !adapter.strDriverKey.isEmpty();
        if (ringLow(adapter)) {
            VxChange change;
            change.uItem = kItemId;
            change.strKind = QLatin1String(bWindows ? kReceiveBuffersKind : VxChangeKind::RxRing);
            change.strTarget = bWindows ? adapter.strDriverKey : adapter.strName;
            change.strOld = QString::number(adapter.nRx);
            change.strNew = QString::number(adapter.nRxMax);
            changes << change;
        }
        if (adapter.nInterruptModeration == 0) {
            VxChange change;
            change.uItem = kItemId;
            change.strKind = QLatin1String(kInterruptModerationKind);
            change.strTarget = adapter.strDriverKey;
            change.strOld = QStringLiteral("0");
            change.strNew = QStringLiteral("1");
            changes << change;
        }
    }
    return changes;
}

} // namespace RxBuffers

QStringList rxBufferLines(const CRxBufferDetectInfo &info)
{
    QStringList listLines;
    for (const QString &strKey : RxBuffers::sysctlKeys()) {
        if (!info.sysctls.contains(strKey))
            continue;
        const qint64 nValue = info.sysctls.value(strKey);
        if (nValue < 0)
            listLines << QCoreApplication::translate("VxOneKeyResult", "%1 cannot be read.").arg(strKey);
        else if (sysctlLow(strKey, nValue))
            listLines << QCoreApplication::translate("VxOneKeyResult", "%1 is %2; cameras need at least %3.")
                             .arg(strKey)
                             .arg(nValue)
                             .arg(RxBuffers::minimumOf(strKey));
        else
            listLines << QCoreApplication::translate("VxOneKeyResult", "%1 is %2.").arg(strKey).arg(nValue);
    }
    if (!info.bRingsReadable)
        listLines << QCoreApplication::translate(
            "VxOneKeyResult", "Receive rings are read from the running system only: not available.");
    for (const CRxAdapter &adapter : info.adapters) {
        const bool bWindows = !adapter.strDriverKey.isEmpty();
        if (adapter.nRx < 0 || adapter.nRxMax <= 0) {
            if (bWindows)
                listLines << QCoreApplication::translate(
                    "VxOneKeyResult", "Receive buffers of %1: the driver offers no setting.")
                                 .arg(adapter.strName);
            else if (info.bRingsReadable)
                listLines << QCoreApplication::translate("VxOneKeyResult", "Receive ring of %1: not available (%2).")
                                 .arg(adapter.strName, adapter.strReason);
        } else if (ringLow(adapter)) {
            listLines << (bWindows
                    ? QCoreApplication::translate("VxOneKeyResult", "Receive buffers of %1: %2 of at most %3.")
                    : QCoreApplication::translate("VxOneKeyResult", "Receive ring of %1: %2 of at most %3 entries."))
                             .arg(adapter.strName)
                             .arg(adapter.nRx)
                             .arg(adapter.nRxMax);
        } else {
            listLines << (bWindows
                    ? QCoreApplication::translate("VxOneKeyResult", "Receive buffers of %1: %2 (the maximum).")
                    : QCoreApplication::translate("VxOneKeyResult", "Receive ring of %1: %2 entries (the maximum)."))
                             .arg(adapter.strName)
                             .arg(adapter.nRx);
        }
        if (adapter.nInterruptModeration == 0)
            listLines << QCoreApplication::translate(
                "VxOneKeyResult", "Interrupt moderation of %1 is off: every frame costs an interrupt.")
                             .arg(adapter.strName);
        else if (adapter.nInterruptModeration == 1)
            listLines << QCoreApplication::translate("VxOneKeyResult", "Interrupt moderation of %1 is on.")
                             .arg(adapter.strName);
    }
    if (info.adapters.isEmpty())
        listLines << QCoreApplication::translate("VxOneKeyResult", "No physical network adapter found.");
    return listLines;
}

QJsonObject rxBufferFacts(const CRxBufferDetectInfo &info)
{
    QJsonObject facts;
    QJsonObject sysctls;
    for (auto it = info.sysctls.cbegin(); it != info.sysctls.cend(); ++it)
        sysctls.insert(it.key(), it.value() < 0 ? QJsonValue() : QJsonValue(it.value()));
    if (!info.sysctls.isEmpty())
        facts.insert(QStringLiteral("sysctls"), sysctls);
    QJsonArray adapters;
    for (const CRxAdapter &adapter : info.adapters) {
        QJsonObject one;
        one.insert(QStringLiteral("name"), adapter.strName);
        if (!adapter.strDriverKey.isEmpty())
            one.insert(QStringLiteral("driverKey"), adapter.strDriverKey);
        one.insert(QStringLiteral("rx"), adapter.nRx < 0 ? QJsonValue() : QJsonValue(adapter.nRx));
        one.insert(QStringLiteral("rxMax"), adapter.nRxMax <= 0 ? QJsonValue() : QJsonValue(adapter.nRxMax));
        if (adapter.nInterruptModeration >= 0)
            one.insert(QStringLiteral("interruptModeration"), adapter.nInterruptModeration == 1);
        if (!adapter.strReason.isEmpty())
            one.insert(QStringLiteral("reason"), adapter.strReason);
        adapters.append(one);
    }
    facts.insert(QStringLiteral("adapters"), adapters);
    facts.insert(QStringLiteral("ringsReadable"), info.bRingsReadable);
    return facts;
}
