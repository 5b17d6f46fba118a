#include "vxonekeyresult.h"

#include "vxonekeyresulttree.h"
#include "vxresulttext.h"

#include <QVBoxLayout>

#include <new>

VxOneKeyResult::VxOneKeyResult(QWidget *pParent)
    : QWidget(pParent)
{
    m_pTree = new VxOneKeyResultTree(this);
    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->addWidget(m_pTree);
    if (!connect(m_pTree, &VxOneKeyResultTree::sigRemoveOptimizeItem, this, &VxOneKeyResult::sigRemoveOptimizeItem))
        throw std::bad_alloc();
}

void VxOneKeyResult::clear()
{
    m_bFinished = false;
    m_pTree->clearResults();
}

void VxOneKeyResult::updateItem(CDetectInfo *pInfo)
{
    m_pTree->updateItem(pInfo);
}

void VxOneKeyResult::setUnavailable(int nItem, bool bUnreadable)
{
    m_pTree->setUnavailable(nItem, bUnreadable);
}

int VxOneKeyResult::countOfSeverity(int nSeverity) const
{
    return m_pTree->countOfSeverity(nSeverity);
}

void VxOneKeyResult::setRunFinished()
{
    m_bFinished = true;
}

bool VxOneKeyResult::writeLog(const QString &strPath) const
{
    return VxResultText::writeLog(strPath, m_pTree->logText());
}
