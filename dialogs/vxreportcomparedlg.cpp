#include "vxreportcomparedlg.h"

#include "custompushbutton.h"
#include "customtitlebar.h"
#include "customtreewidget.h"
#include "vxitems.h"
#include "vxtipswidget.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QVBoxLayout>

#include <new>

namespace {
const int kMargin = 20;
} // namespace

VxReportCompareDlg::VxReportCompareDlg(
    const VxReportDiff::Result &result, const QString &strReportPath, QWidget *pParent)
    : CustomMainWindow(pParent)
    , m_result(result)
    , m_strReportPath(strReportPath)
{
    if (!init())
        throw std::bad_alloc();
}

VxReportCompareDlg::~VxReportCompareDlg() = default;

bool VxReportCompareDlg::init()
{
    if (!cTitleBar())
        return false;
    cTitleBar()->cSetTitleControls(4);
    cAddCustomButtons({tr("Copy")});
    cSetButtons(1);
    if (cButton(0))
        cButton(0)->cSetButtonStyle(CustomPushButton::Secondary);
    if (!connect(this, &CustomMainWindow::cSigButtonClick, this, &VxReportCompareDlg::onButtonClicked))
        return false;

    m_pTips = new (std::nothrow) VxTipsWidget(this);
    m_pTree = new (std::nothrow) CustomTreeWidget(this);
    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pLayout = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    if (!m_pTips || !m_pTree || !pLayout)
        return false;
    m_pTips->setIcon(
        QLatin1String(m_result.gradesDiffer() ? VxTipsWidget::kWarningIcon : VxTipsWidget::kInformationIcon));
    m_pTree->setColumnCount(4);
    m_pTree->setRootIsDecorated(true);
    m_pTree->setUniformRowHeights(true);
    m_pTree->setTextElideMode(Qt::ElideMiddle);
    m_pTree->header()->setStretchLastSection(false);
    m_pTree->header()->setSectionResizeMode(ColChange, QHeaderView::Interactive);
    m_pTree->header()->setSectionResizeMode(ColFact, QHeaderView::Stretch);
    m_pTree->header()->setSectionResizeMode(ColReport, QHeaderView::Interactive);
    m_pTree->header()->setSectionResizeMode(ColNow, QHeaderView::Interactive);
    m_pTree->setColumnWidth(ColChange, 150);
    m_pTree->setColumnWidth(ColReport, 220);
    m_pTree->setColumnWidth(ColNow, 220);
    m_pTree->setVisible(!m_result.isEmpty());

    pLayout->setContentsMargins(kMargin, 12, kMargin, 10);
    pLayout->setSpacing(10);
    pLayout->addWidget(m_pTips);
    pLayout->addWidget(m_pTree, 1);
    if (m_result.isEmpty())
        pLayout->addStretch(1);
    cSetCentralWidget(pBody);
    cSetStrechEdges(203);
    if (m_result.isEmpty()) {
        resize(560, 220);
        cSetMinStrechSize(QSize(420, 200));
    } else {
        resize(1100, 600);
        cSetMinStrechSize(QSize(640, 360));
    }
    retranslateTexts();
    return true;
}

void VxReportCompareDlg::fillTree()
{
    m_pTree->clear();
    for (const VxReportDiff::ItemDiff &item : m_result.items) {
        auto *pItemRow = new QTreeWidgetItem(m_pTree);
        // The item's name in the language on screen; the report's own for an
        // id this program does not name.
        const QString strName = VxItems::itemName(item.nItem);
        QString strHeading = QStringLiteral("[%1] %2").arg(item.nItem).arg(strName.isEmpty() ? item.strName : strName);
        if (item.bGradeChanged)
            strHeading
                += QStringLiteral("  (") + VxReportDiff::kindText(VxReportDiff::Kind::GradeChanged) + QLatin1Char(')');
        pItemRow->setText(ColChange, strHeading);
        pItemRow->setFirstColumnSpanned(true);
        QFont font = pItemRow->font(ColChange);
        font.setBold(true);
        pItemRow->setFont(ColChange, font);
        for (const VxReportDiff::Change &change : item.changes) {
            auto *pRow = new QTreeWidgetItem(pItemRow);
            pRow->setText(ColChange, VxReportDiff::kindText(change.kind));
            pRow->setText(ColFact, change.strPath);
            pRow->setToolTip(ColFact, change.strPath);
            // An item only one report has: its grade stands in for facts.
            const QString strPath
                = (change.kind == VxReportDiff::Kind::ItemAdded || change.kind == VxReportDiff::Kind::ItemRemoved)
                ? QString()
                : change.strPath;
            const QString strBefore = VxReportDiff::valueText(strPath, change.before);
            const QString strAfter = VxReportDiff::valueText(strPath, change.after);
            pRow->setText(ColReport, strBefore);
            pRow->setText(ColNow, strAfter);
            pRow->setToolTip(ColReport, VxReportDiff::valueText(strPath, change.before, 2000));
            pRow->setToolTip(ColNow, VxReportDiff::valueText(strPath, change.after, 2000));
        }
    }
    m_pTree->expandAll();
}

void VxReportCompareDlg::retranslateTexts()
{
    cTitleBar()->cSetTitleText(tr("Compare with Report"));
    setWindowTitle(tr("Compare with Report"));
    m_pTree->setHeaderLabels({tr("Item / Change"), tr("Fact"), tr("In the report"), tr("Now")});
    fillTree();
    updateTips();
}

void VxReportCompareDlg::updateTips()
{
    // The hint wraps to the dialog's width; its text is set again unwrapped.
    m_pTips->setText(
        tr("Report: %1").arg(m_strReportPath) + QStringLiteral("\r\n") + VxReportDiff::summaryText(m_result));
    m_pTips->setFixedWidth(qMax(64, width() - 2 * cFrameMargin() - 2 * kMargin));
    m_pTips->adjustHeight();
}

void VxReportCompareDlg::resizeEvent(QResizeEvent *pEvent)
{
    CustomMainWindow::resizeEvent(pEvent);
    if (m_pTips)
        updateTips();
}

QString VxReportCompareDlg::clipboardText() const
{
    return VxReportDiff::text(m_result, m_strReportPath, tr("this diagnosis"));
}

void VxReportCompareDlg::onButtonClicked(int nIndex)
{
    if (nIndex != 0)
        return; // OK: the frame closes the dialog
    if (QClipboard *pClipboard = QGuiApplication::clipboard())
        pClipboard->setText(clipboardText());
}

void VxReportCompareDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && m_pTree) {
        retranslateTexts();
        cResetCustomButtonNames({tr("Copy")});
    }
    CustomMainWindow::changeEvent(pEvent);
}
