#include "rpfilter.h"

#include <QCoreApplication>

CRpFilterDetectInfo::~CRpFilterDetectInfo() = default;

namespace {

QString modeName(int nValue)
{
    switch (nValue) {
    case 0:
        return QCoreApplication::translate("VxOneKeyResult", "off");
    case RpFilter::kStrict:
        return QCoreApplication::translate("VxOneKeyResult", "strict");
    case RpFilter::kLoose:
        return QCoreApplication::translate("VxOneKeyResult", "loose");
    default:
        return QString::number(nValue);
    }
}

} // namespace

namespace RpFilter {

int effective(int nAll, int nOwn)
{
    return qMax(nAll, nOwn);
}

bool isExceptional(const CRpFilterDetectInfo &info)
{
    for (auto it = info.adapters.cbegin(); it != info.adapters.cend(); ++it) {
        if (effective(info.nAll, it.value()) == kStrict)
            return true;
    }
    return false;
}

VxPlan plan(const CRpFilterDetectInfo &info)
{
    VxPlan changes;
    for (auto it = info.adapters.cbegin(); it != info.adapters.cend(); ++it) {
        if (effective(info.nAll, it.value()) != kStrict)
            continue;
        VxChange change;
        change.uItem = kItemId;
        change.strKind = QLatin1String(VxChangeKind::Sysctl);
        change.strTarget = QStringLiteral("net.ipv4.conf.%1.rp_filter").arg(it.key());
        change.strOld = it.value() < 0 ? QString() : QString::number(it.value());
        change.strNew = QString::number(kLoose);
        changes << change;
    }
    return changes;
}

} // namespace RpFilter

QStringList rpFilterLines(const CRpFilterDetectInfo &info)
{
    QStringList listLines;
    if (!info.bApplicable) {
        listLines << QCoreApplication::translate("VxOneKeyResult", "This system has no reverse-path filter setting.");
        return listLines;
    }
    if (info.nAll < 0)
        listLines << QCoreApplication::translate("VxOneKeyResult", "%1 cannot be read.")
                         .arg(QStringLiteral("net.ipv4.conf.all.rp_filter"));
    for (auto it = info.adapters.cbegin(); it != info.adapters.cend(); ++it) {
        const int nEffective = RpFilter::effective(info.nAll, it.value());
        if (nEffective < 0)
            listLines << QCoreApplication::translate("VxOneKeyResult", "The reverse-path filter of %1 cannot be read.")
                             .arg(it.key());
        else if (nEffective == RpFilter::kStrict)
            listLines << QCoreApplication::translate("VxOneKeyResult",
                "The reverse-path filter of %1 is strict (all: %2, %1: %3): replies from cameras on other subnets are "
                "dropped.")
                             .arg(it.key(), modeName(info.nAll), modeName(it.value()));
        else
            listLines << QCoreApplication::translate("VxOneKeyResult", "The reverse-path filter of %1 is %2.")
                             .arg(it.key(), modeName(nEffective));
    }
    if (info.adapters.isEmpty())
        listLines << QCoreApplication::translate("VxOneKeyResult", "No physical network adapter found.");
    return listLines;
}

QJsonObject rpFilterFacts(const CRpFilterDetectInfo &info)
{
    QJsonObject facts;
    facts.insert(QStringLiteral("applicable"), info.bApplicable);
    if (!info.bApplicable)
        return facts;
    facts.insert(QStringLiteral("all"), info.nAll < 0 ? QJsonValue() : QJsonValue(info.nAll));
    QJsonObject adapters;
    for (auto it = info.adapters.cbegin(); it != info.adapters.cend(); ++it) {
        QJsonObject one;
        one.insert(QStringLiteral("own"), it.value() < 0 ? QJsonValue() : QJsonValue(it.value()));
        const int nEffective = RpFilter::effective(info.nAll, it.value());
        one.insert(QStringLiteral("effective"), nEffective < 0 ? QJsonValue() : QJsonValue(nEffective));
        adapters.insert(it.key(), one);
    }
    facts.insert(QStringLiteral("adapters"), adapters);
    return facts;
}
