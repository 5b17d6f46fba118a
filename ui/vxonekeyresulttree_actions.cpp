// What each result row's button opens. Kept apart from the tree so the tree
// itself needs no dialog headers.
#include "vxonekeyresulttree.h"

#include "cdetectinfo.h"
#include "custommessagebox.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#include "vxresulttext.h"
#include "vxenvcheckdlg.h"
#include "vxjumbpacketdlg.h"
#include "vxnetratedlg.h"
#include "vxoperaterunner.h"
#include "vxsdkfilecleardlg.h"
#include "vxsysteminfolauncher.h"
#include "vxusbbasicinfodlg.h"
#include "vxusbdriverdlg.h"

#include <QLoggingCategory>

#include <exception>

namespace {
Q_LOGGING_CATEGORY(lcActions, "vetrix.ui.actions")

// Builds and runs a modal dialog; one that cannot be built is not shown.
template<typename Dialog, typename Record>
void runDialog(QWidget *pParent, CDetectInfo *pInfo)
{
    auto *pRecord = dynamic_cast<Record *>(pInfo);
    if (!pRecord)
        return;
    try {
        Dialog dialog(pRecord, pParent);
        dialog.exec();
    } catch (const std::exception &error) {
        qCWarning(lcActions) << "cannot build the dialog of item" << pInfo->nItem << error.what();
    }
}
} // namespace

void VxOneKeyResultTree::openSdkFileDialog(CDetectInfo *pInfo)
{
    runDialog<VxSDKFileClearDlg, CSDKPathDetectInfo>(window(), pInfo);
}

void VxOneKeyResultTree::openEnvDialog(CDetectInfo *pInfo)
{
    runDialog<VxEnvCheckDlg, CEnvDetectInfo>(window(), pInfo);
}

void VxOneKeyResultTree::installDriver(CDetectInfo *pInfo)
{
    // Runs the installer and its status polling on a fresh worker behind a
    // loading box; returns when the driver is there or the polling gave up.
    const VxItemRow *pRow = VxItemRegistry::row(quint32(pInfo->nItem));
    const QString strLabel = pRow && pRow->pInstallLabel ? tr(pRow->pInstallLabel) : QString();
    VxOperateRunner runner(false, pInfo->nItem, window(), strLabel, {{pInfo->nItem, pInfo}});
    runner.run();
}

void VxOneKeyResultTree::openUsbDriverDialog(CDetectInfo *pInfo)
{
    runDialog<VxUSBDriverDlg, CUSBControllerDriverInfo>(window(), pInfo);
}

void VxOneKeyResultTree::openLineRateDialog(CDetectInfo *pInfo)
{
    runDialog<VxNetRateDlg, CNetworkSpeedDetectInfo>(window(), pInfo);
}

void VxOneKeyResultTree::openJumboDialog(CDetectInfo *pInfo)
{
    runDialog<VxJumbPacketDlg, CJumboPacketDetectInfo>(window(), pInfo);
}

void VxOneKeyResultTree::openUsbTreeDialog(CDetectInfo *pInfo)
{
    // The viewer reads the record's tree; the operate thread keeps owning it.
    auto *pRecord = dynamic_cast<CUsbBasicDetectInfo *>(pInfo);
    if (!pRecord)
        return;
    try {
        VxUsbBasicInfoDlg dialog(pRecord, false, window());
        dialog.exec();
    } catch (const std::exception &error) {
        qCWarning(lcActions) << "cannot build the dialog of item" << pInfo->nItem << error.what();
    }
}

void VxOneKeyResultTree::openSystemInfo(CDetectInfo *pInfo)
{
    if (auto *pSystem = dynamic_cast<CSystemDetectInfo *>(pInfo))
        VxSystemInfoLauncher::open(window(), *pSystem);
}

void VxOneKeyResultTree::openDetails(CDetectInfo *pInfo)
{
    CustomMessageBox::information(window(), VxResultText::itemLines(*pInfo).join(QLatin1Char('\n')),
                                  VxItems::itemName(pInfo->nItem));
}

const QMap<quint32, VxOneKeyResultTree::DialogOpener> &VxOneKeyResultTree::dialogOpeners()
{
    static const QMap<quint32, DialogOpener> openers = {
        {VxItems::SdkFiles, &VxOneKeyResultTree::openSdkFileDialog},
        {VxItems::EnvVariables, &VxOneKeyResultTree::openEnvDialog},
        {VxItems::UsbControllerDriver, &VxOneKeyResultTree::openUsbDriverDialog},
        {VxItems::LineRate, &VxOneKeyResultTree::openLineRateDialog},
        {VxItems::JumboFrame, &VxOneKeyResultTree::openJumboDialog},
        {VxItems::UsbControllerInfo, &VxOneKeyResultTree::openUsbTreeDialog},
        {VxItems::SystemInfo, &VxOneKeyResultTree::openSystemInfo},
    };
    return openers;
}

void VxOneKeyResultTree::openItemDialog(CDetectInfo *pInfo)
{
    const DialogOpener opener = dialogOpeners().value(quint32(pInfo->nItem), &VxOneKeyResultTree::openDetails);
    (this->*opener)(pInfo);
}
