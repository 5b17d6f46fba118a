#include "vxusbbasicinfodlg.h"

#include "cdetectinfo.h"
#include "cusblinesink.h"
#include "cusbtreedecoder.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "customtreewidget.h"
#include "probekit.h"
#include "vxusbbasicdelegate.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

#include <new>

namespace {

// The library's tree is walked no deeper and no wider than this, so a
// damaged tree cannot make the viewer loop.
constexpr int kMaxDepth = 16;
constexpr int kMaxNodes = 20000;

// Hands the decoders' lines to the dialog.
class CDialogSink : public CUsbLineSink
{
public:
    explicit CDialogSink(VxUsbBasicInfoDlg &dialog)
        : dlg(dialog)
    {
    }
    void addLine(const QString &strLabel, const QString &strValue) override { dlg.appendLine(strLabel, strValue); }

private:
    VxUsbBasicInfoDlg &dlg;
};

} // namespace

VxUsbBasicInfoDlg::VxUsbBasicInfoDlg(CUsbBasicDetectInfo *pInfo, bool bText, QWidget *pParent)
    : CustomMainWindow(pParent)
    , bTextMode(bText)
    , pItem(pInfo)
{
    if (!init())
        throw std::bad_alloc();
}

VxUsbBasicInfoDlg::~VxUsbBasicInfoDlg() = default;

bool VxUsbBasicInfoDlg::init()
{
    if (!pItem || !cTitleBar())
        return false;
    cTitleBar()->cSetTitleText(tr("USB Controller Info"));
    cTitleBar()->cSetTitleControls(4);
    cSetButtons(1);
    setFixedSize(854, 565);

    pTable = new (std::nothrow) CustomTableWidget(this);
    auto *pDelegate = new (std::nothrow) VxUsbBasicDelegate(this);
    if (!pTable || !pDelegate)
        return false;
    pTable->setColumnCount(2);
    pTable->setColumnWidth(0, 220);
    pTable->setColumnWidth(1, 253);
    pTable->setFixedSize(483, 440);
    // The columns fill the table; a vertical scroll bar only narrows the value column.
    pTable->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pTable->horizontalHeader()->hide();
    pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    pTable->setItemDelegate(pDelegate);
    pTable->cSetStyleSelector(QStringLiteral("USBController"));

    pTree = new (std::nothrow) CustomTreeWidget(this);
    if (!pTree)
        return false;
    pTree->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    pTree->header()->setStretchLastSection(false);
    pTree->setTextElideMode(Qt::ElideNone);
    pTree->header()->hide();
    pTree->setColumnCount(1);
    pTree->setFixedSize(330, 458);
    pTree->cSetStyleSelector(QStringLiteral("USBController"));

    if (pItem->pRootItem) {
        int nBudget = kMaxNodes;
        fillTree(pItem->pRootItem->pChildren, pTree->invisibleRootItem(), 0, nBudget);
    }
    pTree->expandAll();
    if (QTreeWidgetItem *pFirst = pTree->topLevelItem(0)) {
        pTree->setCurrentItem(pFirst);
        showNode(pFirst);
    } else if (pItem->pRootItem) {
        // The machine was looked at and has no USB host controller.
        appendLine(noControllerText(), QString());
    }
    if (!connect(pTree, &QTreeWidget::itemSelectionChanged, this, &VxUsbBasicInfoDlg::onItemSelectionChanged))
        return false;

    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pColumn = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    auto *pRow = new (std::nothrow) QHBoxLayout;
    if (!pColumn || !pRow)
        return false;
    pColumn->setContentsMargins(15, 4, 15, 0);
    pColumn->setSpacing(0);
    pRow->setSpacing(10);
    pRow->addWidget(pTree, 0, Qt::AlignTop);
    pRow->addWidget(pTable, 0, Qt::AlignTop);
    pRow->addStretch(1);
    pColumn->addLayout(pRow);
    pColumn->addStretch(1);
    cSetCentralWidget(pBody);
    return true;
}

void VxUsbBasicInfoDlg::fillTree(const UsbListNode *pList, QTreeWidgetItem *pParent, int nDepth, int &nBudget)
{
    if (nDepth > kMaxDepth)
        return;
    for (const UsbListNode *pCell = pList; pCell && nBudget > 0; pCell = pCell->pNext, --nBudget) {
        const UsbTreeItem *pNode = pCell->pItem;
        // No node, no information, or an empty port: not listed.
        if (!CUsbTreeDecoder::isListed(pNode))
            continue;
        auto *pTreeItem = new QTreeWidgetItem(pParent);
        const QString strName = CUsbTreeDecoder::wideText(pNode->pName);
        pTreeItem->setText(0, strName);
        pTreeItem->setToolTip(0, strName);
        pTreeItem->setData(0, kNodeRole, QVariant::fromValue(pNode->pInfo));
        fillTree(pNode->pChildren, pTreeItem, nDepth + 1, nBudget);
    }
}

void VxUsbBasicInfoDlg::onItemSelectionChanged()
{
    showNode(pTree->currentItem());
}

void VxUsbBasicInfoDlg::showNode(QTreeWidgetItem *pTreeItem)
{
    if (!pTreeItem || !pTree || pTreeItem == pTree->invisibleRootItem())
        return;
    const void *pInfo = pTreeItem->data(0, kNodeRole).value<void *>();
    if (!pInfo)
        return;
    pTable->clearSpans();
    pTable->setRowCount(0);
    CDialogSink sink(*this);
    CUsbTreeDecoder(sink).printNode(pInfo);
    // Another node's lines start at their top, not where the last ones were scrolled to.
    pTable->scrollToTop();
}

void VxUsbBasicInfoDlg::printTree()
{
    if (!bTextMode)
        return;
    listTextLines.clear();
    if (!pItem->pRootItem)
        return;
    CDialogSink sink(*this);
    CUsbTreeDecoder(sink).printTree(pItem->pRootItem);
    if (listTextLines.isEmpty())
        appendLine(noControllerText(), QString());
}

QString VxUsbBasicInfoDlg::noControllerText()
{
    return tr("No USB host controller was found.");
}

QString VxUsbBasicInfoDlg::breakText(const QString &strText, int nLimit, const QFontMetrics &metrics, bool *pBroken)
{
    QString strBroken = strText;
    const int nWidth = metrics.boundingRect(strText).width();
    const bool bBreak = nWidth >= nLimit && nWidth > 0;
    if (bBreak)
        strBroken.insert(strText.length() * nLimit / nWidth, QStringLiteral("\r\n"));
    if (pBroken)
        *pBroken = bBreak;
    return strBroken;
}

void VxUsbBasicInfoDlg::appendLine(const QString &strLabel, const QString &strValue)
{
    if (bTextMode) {
        if (!strLabel.isEmpty() || !strValue.isEmpty())
            listTextLines.append(strLabel + QStringLiteral("    ") + strValue);
        else
            listTextLines.append(QStringLiteral("  "));
        return;
    }
    const int nRow = pTable->rowCount();
    pTable->insertRow(nRow);
    pTable->setRowHeight(nRow, kRowHeight);
    const QFontMetrics metrics(pTable->font());
    bool bLabelBroken = false;
    bool bValueBroken = false;
    const QString strShownLabel = breakText(strLabel, kLabelBreak, metrics, &bLabelBroken);
    const QString strShownValue = breakText(strValue, kValueBreak, metrics, &bValueBroken);
    if (bLabelBroken || bValueBroken)
        pTable->setRowHeight(nRow, kBrokenRowHeight);
    pTable->setItem(nRow, 0, new QTableWidgetItem(strShownLabel));
    pTable->setItem(nRow, 1, new QTableWidgetItem(strShownValue));
    if (strValue.isEmpty())
        pTable->setSpan(nRow, 0, 1, 2);
}

void VxUsbBasicInfoDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && cTitleBar())
        cTitleBar()->cSetTitleText(tr("USB Controller Info"));
    CustomMainWindow::changeEvent(pEvent);
}
