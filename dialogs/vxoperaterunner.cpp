#include "vxoperaterunner.h"

#include "vxitemregistry.h"

#include "cdetectinfo.h"
#include "customloadingdialog.h"
#include "vxdialogprobes.h"
#include "vxoperatethread.h"

#include <QApplication>
#include <QEventLoop>
#include <QPointer>

VxOperateRunner::VxOperateRunner(bool bDetecting, int nItem, QWidget *pParentWidget, const QString &strText,
                                 const QMap<int, CDetectInfo *> &mapRecords)
    : bIsDetecting(bDetecting)
    , nItemType(nItem)
    , pParent(pParentWidget)
    , strLoadingText(strText)
    , mapItems(mapRecords)
{
}

bool VxOperateRunner::recordFits(int nId, const CDetectInfo *pInfo)
{
    if (!pInfo)
        return false;
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nId));
    return !pRow || !pRow->fits || pRow->fits(*pInfo);
}

void VxOperateRunner::run()
{
    QPointer<CustomLoadingDialog> pLoading;
    if (!strLoadingText.isEmpty()) {
        QWidget *pOwner = pParent ? pParent : QApplication::activeWindow();
        pLoading = new CustomLoadingDialog(pOwner);
        pLoading->SetLabelText(strLoadingText);
        pLoading->setModal(true);
        pLoading->show();
        QCoreApplication::processEvents();
    }

    // Records the caller already holds are worked on in place, in both modes.
    // The thread picks a record's probe by its item id: a record filed under
    // an id it does not belong to is left out, and its item is not run.
    quint32 uMask = quint32(nItemType);
    QMap<int, CDetectInfo *> mapHanded;
    for (auto it = mapItems.cbegin(); it != mapItems.cend(); ++it) {
        if (!it.value())
            continue;
        if (!recordFits(it.key(), it.value())) {
            uMask &= ~quint32(it.key());
            continue;
        }
        it.value()->nItem = it.key();
        mapHanded.insert(it.key(), it.value());
    }
    auto *pThread = new VxOperateThread(VxDialogProbes::table());
    pThread->prepareRun(bIsDetecting, uMask, 0);
    pThread->setRecords(mapHanded);
    // A local event loop keeps the GUI alive without spinning a core while a
    // repair waits for, say, a password prompt; the end of the thread posts
    // its quit to this thread, so a thread that ends before the loop starts
    // still ends it.
    QEventLoop loop;
    QObject::connect(pThread, &QThread::finished, &loop, &QEventLoop::quit, Qt::QueuedConnection);
    pThread->start(QThread::InheritPriority);
    if (pThread->isRunning() || pThread->isFinished())
        loop.exec(); // otherwise the system could not start a thread: nothing ran
    pThread->wait();

    // Records the thread had to create are handed over (in a repair too, so
    // none is lost); the caller's own stay where they are.
    const QMap<int, CDetectInfo *> mapRecords = pThread->allRecords();
    for (auto it = mapRecords.cbegin(); it != mapRecords.cend(); ++it) {
        if (!mapHanded.contains(it.key()) && !mapItems.contains(it.key()))
            mapItems.insert(it.key(), it.value());
    }
    for (int nItem : mapHanded.keys())
        mapOutcomes.insert(nItem, pThread->repairOutcome(nItem));
    pThread->releaseRecords();
    pThread->deleteLater();

    if (pLoading) {
        pLoading->close();
        pLoading->deleteLater();
    }
}
