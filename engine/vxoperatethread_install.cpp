// The driver items' optimization: start the installer, then poll the status.
#include "vxoperatethread.h"

#include "vxrepair.h"

QString VxOperateThread::installFailureText(int nStatus)
{
    switch (VxRepairStatus(nStatus)) {
    case VxRepairStatus::NotAuthorized:
        return tr("The driver was not installed: administrator rights were not granted.");
    case VxRepairStatus::HelperMissing:
        return tr("The driver was not installed: administrator rights could not be requested.");
    case VxRepairStatus::Refused:
        return tr("The driver was not installed: the installer was not accepted.");
    case VxRepairStatus::Failed:
        return tr("The driver was not installed: the installer could not be started.");
    case VxRepairStatus::OtherSystem:
        return tr("The driver was not installed: the installer belongs to the examined system image and is not run on this computer.");
    case VxRepairStatus::Done:
    case VxRepairStatus::NotFound:
        break;
    }
    return tr("File doesn't exist.");
}

void VxOperateThread::installAndPoll(CDetectInfo *pInfo, const std::function<VxRepairOutcome()> &install,
                                     const std::function<void(CDetectInfo &)> &check)
{
    const VxRepairOutcome outcome = install();
    noteOutcome(pInfo->nItem, outcome);
    if (!outcome.ok()) {
        // Nothing was started, so there is nothing to wait for: say why now.
        pInfo->bNormal = 0;
        emit sigEndOptimizeItem(pInfo);
        emit sigWarning(installFailureText(int(outcome.status)));
        return;
    }
    // The installer runs detached; poll the status until the driver shows up
    // or ten minutes have passed.
    const qint64 nStart = m_clock();
    while (pInfo->bNormal == 0 && m_clock() - nStart < kInstallPollLimitMs)
        check(*pInfo);
    emit sigEndOptimizeItem(pInfo);
    if (pInfo->bNormal == 1)
        clearCurrentBit(pInfo->nItem);
    else
        emit sigWarning(tr("Installation of the driver timed out."));
}
