// The one-key page's side of a pass: the worker's progress signals, the
// progress title, the result rows the worker is still working on, and the
// exceptions left once an optimisation has ended.
#include "vxonekeywidget.h"

#include "cdetectinfo.h"
#include "vxinterprogressbar.h"
#include "vxitems.h"
#include "vxonekeyresult.h"
#include "vxonekeyresulttree.h"
#include "vxoperatethread.h"

#include <QLabel>

QString VxOneKeyWidget::currentItemName() const
{
    return m_nCurrentItem ? VxItems::itemName(m_nCurrentItem) : QString();
}

QString VxOneKeyWidget::detectTitle() const
{
    return tr("Diagnosis: %1(%2/%3)").arg(currentItemName()).arg(m_nDetectedCount).arg(m_nTotal);
}

QString VxOneKeyWidget::optimizeTitle() const
{
    return tr("Optimization: %1(%2/%3)").arg(currentItemName()).arg(m_nOptimizedCount).arg(m_nExceptionCount);
}

void VxOneKeyWidget::setBusyItems(quint32 uMask)
{
    if (m_pResult)
        m_pResult->tree()->setBusyItems(uMask);
}

// Once an optimisation is over, the items it repaired no longer count as
// exceptions: "Optimize Diagnosis" then works on what is left, and the
// stopped state names how many are left. During the pass the count stays as
// it was at the start, so the title's two numbers always belong together.
void VxOneKeyWidget::settleRepairedItems()
{
    const quint32 uRepaired = m_uExceptionMask & m_uRepairedMask;
    m_uRepairedMask = 0;
    for (int nItem : VxItems::optimizeOrder()) {
        if (uRepaired & quint32(nItem)) {
            m_uExceptionMask &= ~quint32(nItem);
            --m_nExceptionCount;
        }
    }
}

void VxOneKeyWidget::onStartOperate(bool)
{
}

void VxOneKeyWidget::onEndOperate()
{
    if (!m_pThread || !m_pResult)
        return;
    m_pResult->setRunFinished();
    // The pass is over: every row's button may start work again.
    setBusyItems(0);
    if (m_nPendingState == Idle)
        return; // a pause or stop already applied its state
    // The pass has sent its last signal and is returning; let it finish so
    // the running test below reads the settled answer.
    if (m_pThread->isRunning())
        m_pThread->wait(1000);
    const bool bRunning = m_pThread->isRunning();
    if ((m_nPendingState == DetectPaused || m_nPendingState == DetectAborted) && !bRunning)
        m_nPendingState = DetectFinished;
    if (m_nPendingState == DetectFinished)
        m_endTime = QTime::currentTime();
    if ((m_nPendingState == OptimizePaused || m_nPendingState == OptimizeStopped) && !bRunning)
        m_nPendingState = OptimizeFinished;
    if (m_nPendingState == OptimizeStopped || m_nPendingState == OptimizeFinished)
        settleRepairedItems();
    applyState(m_nPendingState);
    setEnabled(true);
    hideLoading();
}

void VxOneKeyWidget::onStartDetectItem(CDetectInfo *pInfo)
{
    if (m_nState != Detecting || !pInfo)
        return;
    m_nCurrentItem = pInfo->nItem;
    m_strCurrentTitle = detectTitle();
    m_pTitle->setText(m_strCurrentTitle);
}

void VxOneKeyWidget::onEndDetectItem(CDetectInfo *pInfo)
{
    if (m_nState != Detecting || !pInfo)
        return;
    ++m_nDetectedCount;
    m_nCurrentItem = pInfo->nItem;
    m_strCurrentTitle = detectTitle();
    m_pTitle->setText(m_strCurrentTitle);
    m_pProgress->setValue(m_nDetectedCount);
    m_pResult->tree()->releaseBusyItem(pInfo->nItem);
    m_pResult->updateItem(pInfo);
    setGroupNumbers();
    const bool bOptimizable =
        VxItems::optimizeOrder().contains(pInfo->nItem) && m_pThread->probeTable().canOptimize(pInfo->nItem);
    if (!pInfo->bNormal && bOptimizable && !(m_uExceptionMask & quint32(pInfo->nItem))) {
        m_uExceptionMask |= quint32(pInfo->nItem);
        ++m_nExceptionCount;
    }
}

// The title counts the items the optimisation has finished, out of the
// exceptions it set out to repair: (0/3) while the first runs, (3/3) at the
// end.
void VxOneKeyWidget::onStartOptimizeItem(CDetectInfo *pInfo)
{
    if (m_nState != Optimizing || !pInfo)
        return;
    m_nCurrentItem = pInfo->nItem;
    m_strCurrentTitle = optimizeTitle();
    m_pTitle->setText(m_strCurrentTitle);
}

void VxOneKeyWidget::onEndOptimizeItem(CDetectInfo *pInfo)
{
    if (m_nState != Optimizing || !pInfo)
        return;
    ++m_nOptimizedCount;
    m_nCurrentItem = pInfo->nItem;
    m_strCurrentTitle = optimizeTitle();
    m_pTitle->setText(m_strCurrentTitle);
    m_pProgress->setValue(m_nOptimizedCount);
    m_pResult->tree()->releaseBusyItem(pInfo->nItem);
    m_pResult->updateItem(pInfo);
    if (pInfo->bNormal)
        m_uRepairedMask |= quint32(pInfo->nItem);
    else
        m_uRepairedMask &= ~quint32(pInfo->nItem);
}

void VxOneKeyWidget::onRemoveOptimizeItem(int nItem)
{
    if (!(m_uExceptionMask & quint32(nItem)))
        return;
    --m_nExceptionCount;
    m_uExceptionMask &= ~quint32(nItem);
    m_uRepairedMask &= ~quint32(nItem);
    applyState(DetectFinished);
}
