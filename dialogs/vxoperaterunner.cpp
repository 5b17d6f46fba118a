#include "vxoperaterunner.h"

#include "customloadingdialog.h"
#include "vxdialogprobes.h"
#include "vxoperatethread.h"

#include <QApplication>
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

    auto *pThread = new VxOperateThread(VxDialogProbes::table());
    pThread->prepareRun(bIsDetecting, quint32(nItemType), 0);
    // Records the caller already holds are worked on in place, in both modes.
    pThread->setRecords(mapItems);
    // The end of the thread posts an event to this thread, so the wait for
    // more events below wakes up for it: the GUI stays alive without
    // spinning a core while a repair waits for, say, a password prompt.
    QObject wake;
    bool bFinished = false;
    QObject::connect(pThread, &QThread::finished, &wake, [&bFinished] { bFinished = true; }, Qt::QueuedConnection);
    pThread->start(QThread::InheritPriority);
    if (!pThread->isRunning() && !pThread->isFinished())
        bFinished = true; // the system could not start a thread: nothing ran
    while (!bFinished)
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
    pThread->wait();

    if (bIsDetecting) {
        const QMap<int, CDetectInfo *> mapRecords = pThread->allRecords();
        for (auto it = mapRecords.cbegin(); it != mapRecords.cend(); ++it)
            mapItems.insert(it.key(), it.value());
    }
    pThread->releaseRecords();
    pThread->deleteLater();

    if (pLoading) {
        pLoading->close();
        pLoading->deleteLater();
    }
}
