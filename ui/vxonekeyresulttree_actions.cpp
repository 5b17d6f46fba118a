// What each result row's button opens. Kept apart from the tree so the tree
// itself needs no dialog headers.
#include "vxonekeyresulttree.h"

#include "cdetectinfo.h"

#include <QLoggingCategory>

namespace {
Q_LOGGING_CATEGORY(lcActions, "vetrix.ui.actions")

void pendingDialog(const char *pName, const CDetectInfo *pInfo)
{
    qCInfo(lcActions) << "no dialog yet for" << pName << "item" << (pInfo ? pInfo->nItem : 0);
}
} // namespace

void VxOneKeyResultTree::openSdkFileDialog(CDetectInfo *pInfo)
{
    pendingDialog("SDK files", pInfo);
}

void VxOneKeyResultTree::openEnvDialog(CDetectInfo *pInfo)
{
    pendingDialog("environment", pInfo);
}

void VxOneKeyResultTree::installDriver(CDetectInfo *pInfo)
{
    pendingDialog("driver install", pInfo);
}

void VxOneKeyResultTree::openUsbDriverDialog(CDetectInfo *pInfo)
{
    pendingDialog("USB controller driver", pInfo);
}

void VxOneKeyResultTree::openLineRateDialog(CDetectInfo *pInfo)
{
    pendingDialog("line rate", pInfo);
}

void VxOneKeyResultTree::openJumboDialog(CDetectInfo *pInfo)
{
    pendingDialog("jumbo frame", pInfo);
}

void VxOneKeyResultTree::openUsbTreeDialog(CDetectInfo *pInfo)
{
    pendingDialog("USB tree", pInfo);
}

void VxOneKeyResultTree::openSystemInfo(CDetectInfo *pInfo)
{
    pendingDialog("system information", pInfo);
}
