#include "tuningapply.h"

#include <QCoreApplication>

// The sysctl, usbfs and ethtool changes exist on Linux only; Windows repairs
// of the tuning items change the registry and the power plan themselves.
namespace TuningApply {

QString sysctlDropInPath()
{
    return QString();
}

QString usbfsTmpfilesPath()
{
    return QString();
}

bool isValid(const VxChange &change, QString *pError)
{
    if (pError)
        *pError = QCoreApplication::translate("VxOneKeyResult", "The change is not one this program makes: %1 %2 = %3")
                      .arg(change.strKind, change.strTarget, change.strNew);
    return false;
}

QString sysctlPath(const QString &)
{
    return QString();
}

QString sysctlFileKey(const QString &)
{
    return QString();
}

VxRepairOutcome applyPlan(const VxPlan &plan, const VxPrivileges &, const NetAdapters::LinkSource &)
{
    for (const VxChange &change : plan) {
        QString strError;
        if (!isValid(change, &strError))
            return VxRepairOutcome::failed(strError);
    }
    return VxRepairOutcome();
}

} // namespace TuningApply

bool applyTuningChange(const VxChange &change, QString *pError)
{
    return TuningApply::isValid(change, pError);
}

bool readTuningValue(const VxChange &, QString *)
{
    return false;
}
