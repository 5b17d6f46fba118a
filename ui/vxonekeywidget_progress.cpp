// The one-key page's side of a pass: the worker's progress signals, the
// result rows the worker is still working on, and the end of a pass.
#include "vxonekeywidget.h"

#include "cdetectinfo.h"
#include "vxonekeyresult.h"
#include "vxonekeyresulttree.h"
#include "vxoperatethread.h"

void VxOneKeyWidget::setBusyItems(quint32 uMask)
{
    if (m_pResult)
        m_pResult->tree()->setBusyItems(uMask);
}

void VxOneKeyWidget::onStartOperate(bool)
{
}

void VxOneKeyWidget::onEndOperate()
{
    if (!m_pThread || !m_pResult || !m_pRun)
        return;
    m_pResult->setRunFinished();
    // The pass is over: every row's button may start work again.
    setBusyItems(0);
    if (m_pRun->pendingState() == Idle)
        return; // a pause or stop already applied its state
    // The pass has sent its last signal and is returning; let it finish so
    // the running test below reads the settled answer.
    if (m_pThread->isRunning())
        m_pThread->wait(1000);
    follow(m_pRun->endOperate(m_pThread->isRunning()));
    setEnabled(true);
    hideLoading();
}

void VxOneKeyWidget::onStartDetectItem(CDetectInfo *pInfo)
{
    if (pInfo && m_pRun)
        follow(m_pRun->startDetectItem(pInfo->nItem));
}

void VxOneKeyWidget::onEndDetectItem(CDetectInfo *pInfo)
{
    if (!pInfo || !m_pRun || !m_pRun->endDetectItem(pInfo->nItem, pInfo->bNormal != 0).bTaken)
        return;
    m_pResult->tree()->releaseBusyItem(pInfo->nItem);
    m_pResult->updateItem(pInfo);
    m_pRun->resultChanged();
    render(false);
}

void VxOneKeyWidget::onStartOptimizeItem(CDetectInfo *pInfo)
{
    if (pInfo && m_pRun)
        follow(m_pRun->startOptimizeItem(pInfo->nItem));
}

void VxOneKeyWidget::onEndOptimizeItem(CDetectInfo *pInfo)
{
    if (!pInfo || !m_pRun || !m_pRun->endOptimizeItem(pInfo->nItem, pInfo->bNormal != 0).bTaken)
        return;
    m_pResult->tree()->releaseBusyItem(pInfo->nItem);
    m_pResult->updateItem(pInfo);
    render(false);
}

void VxOneKeyWidget::onRemoveOptimizeItem(int nItem)
{
    if (m_pRun)
        follow(m_pRun->removeOptimizeItem(nItem));
}
