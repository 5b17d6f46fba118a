#include "vxonekeyresulttree.h"

#include "cdetectinfo.h"
#include "conekeyresultdelegate.h"
#include "custom.h"
#include "custompushbutton.h"
#include "vxitemregistry.h"
#include "vxitems.h"
#include "vxresulttext.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QIcon>

#include <new>

namespace {
// Some items' lines (the whole USB tree) are shown by their viewer instead.
bool showsLinesInTree(int nItem)
{
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    return !pRow || pRow->bLinesInTree;
}
} // namespace

VxOneKeyResultTree::VxOneKeyResultTree(QWidget *pParent)
    : CustomTreeWidget(pParent)
{
    if (!init())
        throw std::bad_alloc();
}

bool VxOneKeyResultTree::init()
{
    auto *pDelegate = new (std::nothrow) COnekeyResultDelegate(this);
    if (!pDelegate)
        return false;
    setItemDelegate(pDelegate);
    cSetStyleSelector(QStringLiteral("VxResultTable"));
    setFrameStyle(0);
    setHeaderHidden(true);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setColumnCount(2);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setSectionResizeMode(1, QHeaderView::Stretch);
    setIconSize(QSize(30, 30));
    setRootIsDecorated(false);
    setIndentation(0);
    setFocusPolicy(Qt::NoFocus);

    for (int nGroup : VxItems::groups()) {
        auto *pGroupRow = new (std::nothrow) QTreeWidgetItem(invisibleRootItem());
        if (!pGroupRow)
            return false;
        pGroupRow->setFlags(pGroupRow->flags() & ~Qt::ItemIsSelectable);
        pGroupRow->setData(0, RoleItemId, -1);
        pGroupRow->setData(0, RoleGroup, nGroup);
        m_mapGroupRows.insert(nGroup, pGroupRow);
        for (int nItem : VxItems::displayOrder(nGroup)) {
            auto *pRow = new (std::nothrow) QTreeWidgetItem(pGroupRow);
            if (!pRow)
                return false;
            pRow->setFlags(pRow->flags() & ~Qt::ItemIsSelectable);
            pRow->setData(0, RoleItemId, nItem);
            pRow->setData(0, RoleGroup, -1);
            m_mapItemRows.insert(nItem, pRow);
            CustomPushButton *pButton = buttonFor(nItem);
            if (!pButton)
                return false;
            auto *pCell = new (std::nothrow) QWidget(this);
            if (!pCell)
                return false;
            auto *pCellLayout = new QHBoxLayout(pCell);
            pCellLayout->setContentsMargins(0, 0, 24, 0);
            pCellLayout->addStretch();
            pCellLayout->addWidget(pButton, 0, Qt::AlignVCenter);
            pCell->setFixedHeight(COnekeyResultDelegate::kItemRowHeight);
            setItemWidget(pRow, 1, pCell);
        }
    }
    expandAll();
    retranslate();
    return true;
}

CustomPushButton *VxOneKeyResultTree::buttonFor(int nItem)
{
    if (CustomPushButton *pExisting = m_mapButtons.value(nItem))
        return pExisting;
    auto *pButton = new (std::nothrow) CustomPushButton(this);
    if (!pButton)
        return nullptr;
    pButton->cSetButtonStyle(CustomPushButton::Secondary);
    // The longest texts ("Check and Upgrade") must fit the fixed 120 px.
    pButton->setStyleSheet(QStringLiteral("QPushButton { padding: 0px 2px; font-size: 12px; }"));
    if (Custom::language() != 0)
        pButton->setFixedSize(120, 24);
    else
        pButton->setFixedSize(86, 24);
    pButton->setEnabled(false);
    pButton->setVisible(false); // shown once the item has a result
    pButton->setProperty("vxItemId", nItem);
    if (!connect(pButton, &QPushButton::clicked, this, &VxOneKeyResultTree::onDealWithBtnClicked))
        return nullptr;
    m_mapButtons.insert(nItem, pButton);
    return pButton;
}

void VxOneKeyResultTree::updateItem(CDetectInfo *pInfo)
{
    if (!pInfo || !m_mapItemRows.contains(pInfo->nItem))
        return;
    m_mapUnavailable.remove(pInfo->nItem);
    m_mapRecords.insert(pInfo->nItem, pInfo);
    refreshItem(pInfo);
}

void VxOneKeyResultTree::refreshItem(CDetectInfo *pInfo)
{
    if (!pInfo)
        return;
    QTreeWidgetItem *pRow = m_mapItemRows.value(pInfo->nItem);
    CustomPushButton *pButton = m_mapButtons.value(pInfo->nItem);
    if (!pRow || !pButton)
        return;
    const bool bNormal = pInfo->bNormal != 0;
    bool bEnabled = false;
    pButton->setText(VxItems::buttonText(bNormal, pInfo->nItem, bEnabled));
    pButton->setEnabled(bEnabled && !isBusy(pInfo->nItem));
    pButton->setVisible(true);
    const int nSeverity = VxItems::severity(bNormal, pInfo->nItem);
    pRow->setData(0, RoleSeverity, nSeverity);
    pRow->setIcon(0, QIcon(VxItems::severityIconPath(nSeverity)));
    setItemLines(pRow, showsLinesInTree(pInfo->nItem) ? VxResultText::itemLines(*pInfo) : QStringList());
    updateGroupCounter(VxItems::groupOf(pInfo->nItem));
}

void VxOneKeyResultTree::setItemLines(QTreeWidgetItem *pRow, const QStringList &listLines)
{
    while (pRow->childCount() > listLines.size())
        delete pRow->takeChild(pRow->childCount() - 1);
    for (int i = 0; i < listLines.size(); ++i) {
        QTreeWidgetItem *pLine = pRow->child(i);
        if (!pLine) {
            // Marked as a line before it joins the tree, so the view never
            // measures it as an item row.
            pLine = new QTreeWidgetItem;
            pLine->setFlags(pLine->flags() & ~Qt::ItemIsSelectable);
            pLine->setData(0, RoleItemId, -2);
            pLine->setData(0, RoleGroup, -1);
            pLine->setData(0, RoleLine, true);
            pRow->addChild(pLine);
            pLine->setFirstColumnSpanned(true);
        }
        pLine->setText(0, listLines.at(i).trimmed());
        pLine->setToolTip(0, listLines.at(i));
    }
    pRow->setExpanded(true);
}

void VxOneKeyResultTree::updateGroupCounter(int nGroup)
{
    QTreeWidgetItem *pGroupRow = m_mapGroupRows.value(nGroup);
    if (!pGroupRow)
        return;
    int nExceptions = 0;
    for (int i = 0; i < pGroupRow->childCount(); ++i) {
        const QVariant severity = pGroupRow->child(i)->data(0, RoleSeverity);
        if (severity.isValid() && severity.toInt() >= 1)
            ++nExceptions;
    }
    QString strText = VxItems::groupName(nGroup);
    if (nExceptions > 0)
        strText += tr(" (%1 Exception(s))").arg(nExceptions);
    pGroupRow->setText(0, strText);
}

void VxOneKeyResultTree::setUnavailable(int nItem, bool bUnreadable)
{
    QTreeWidgetItem *pRow = m_mapItemRows.value(nItem);
    if (!pRow)
        return;
    m_mapRecords.remove(nItem);
    m_mapUnavailable.insert(nItem, bUnreadable);
    pRow->setData(0, RoleSeverity, QVariant());
    pRow->setIcon(0, QIcon());
    if (CustomPushButton *pButton = m_mapButtons.value(nItem)) {
        pButton->setEnabled(false);
        pButton->setVisible(false);
    }
    setItemLines(pRow, {VxResultText::unavailableLine(bUnreadable)});
    updateGroupCounter(VxItems::groupOf(nItem));
}

void VxOneKeyResultTree::clearResults()
{
    m_mapRecords.clear();
    m_mapUnavailable.clear();
    for (auto it = m_mapItemRows.cbegin(); it != m_mapItemRows.cend(); ++it) {
        QTreeWidgetItem *pRow = it.value();
        pRow->setData(0, RoleSeverity, QVariant());
        pRow->setIcon(0, QIcon());
        setItemLines(pRow, {});
        if (CustomPushButton *pButton = m_mapButtons.value(it.key())) {
            pButton->setEnabled(false);
            pButton->setVisible(false);
        }
    }
    for (int nGroup : VxItems::groups())
        updateGroupCounter(nGroup);
    scrollToTop();
}

void VxOneKeyResultTree::setBusyItems(quint32 uMask)
{
    const quint32 uChanged = m_uBusyItems ^ uMask;
    m_uBusyItems = uMask;
    for (CDetectInfo *pInfo : qAsConst(m_mapRecords)) {
        if (uChanged & quint32(pInfo->nItem))
            refreshItem(pInfo);
    }
}

void VxOneKeyResultTree::releaseBusyItem(int nItem)
{
    setBusyItems(m_uBusyItems & ~quint32(nItem));
}

int VxOneKeyResultTree::countOfSeverity(int nSeverity) const
{
    int nCount = 0;
    for (QTreeWidgetItem *pRow : m_mapItemRows) {
        const QVariant severity = pRow->data(0, RoleSeverity);
        if (severity.isValid() && severity.toInt() == nSeverity)
            ++nCount;
    }
    return nCount;
}

QTreeWidgetItem *VxOneKeyResultTree::itemRow(int nItem) const
{
    return m_mapItemRows.value(nItem);
}

QTreeWidgetItem *VxOneKeyResultTree::groupRow(int nGroup) const
{
    return m_mapGroupRows.value(nGroup);
}

CustomPushButton *VxOneKeyResultTree::button(int nItem) const
{
    return m_mapButtons.value(nItem);
}

CDetectInfo *VxOneKeyResultTree::record(int nItem) const
{
    return m_mapRecords.value(nItem);
}

QString VxOneKeyResultTree::logText() const
{
    QList<const CDetectInfo *> listRecords;
    for (CDetectInfo *pInfo : m_mapRecords)
        listRecords << pInfo;
    return VxResultText::logText(listRecords);
}

void VxOneKeyResultTree::onDealWithBtnClicked()
{
    const int nItem = sender() ? sender()->property("vxItemId").toInt() : 0;
    CDetectInfo *pInfo = m_mapRecords.value(nItem);
    if (!pInfo || isBusy(nItem))
        return;
    const VxItemRow *pRow = VxItemRegistry::row(quint32(nItem));
    switch (pRow ? pRow->action : VxRowAction::None) {
    case VxRowAction::None:
        break; // the button only states the outcome
    case VxRowAction::Dialog:
        openItemDialog(pInfo);
        break;
    case VxRowAction::RepairDialog:
        openItemDialog(pInfo);
        refreshItem(pInfo);
        if (pInfo->bNormal)
            emit sigRemoveOptimizeItem(nItem);
        break;
    case VxRowAction::Install:
        installDriver(pInfo);
        refreshItem(pInfo);
        break;
    }
}

void VxOneKeyResultTree::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange)
        retranslate();
    CustomTreeWidget::changeEvent(pEvent);
}

void VxOneKeyResultTree::retranslate()
{
    for (auto it = m_mapItemRows.cbegin(); it != m_mapItemRows.cend(); ++it)
        it.value()->setText(0, VxItems::itemName(it.key()));
    for (CDetectInfo *pInfo : m_mapRecords)
        refreshItem(pInfo);
    for (auto it = m_mapUnavailable.cbegin(); it != m_mapUnavailable.cend(); ++it)
        setItemLines(m_mapItemRows.value(it.key()), {VxResultText::unavailableLine(it.value())});
    for (int nGroup : VxItems::groups())
        updateGroupCounter(nGroup);
}
