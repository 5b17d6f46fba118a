#include "vxsdkfilecleardlg.h"

#include "cdetectinfo.h"
#include "custommessagebox.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "vxitemid.h"
#include "vxplatformtexts.h"
#include "vxtipswidget.h"

#include <QEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QVBoxLayout>

#include <new>

namespace {
const int kRowHeight = 38;

bool fileExists(const QString &strDir, const QString &strFile)
{
    return QFileInfo::exists(strDir + QLatin1Char('/') + strFile);
}
} // namespace

VxSDKFileClearDlg::VxSDKFileClearDlg(CSDKPathDetectInfo *pInfo, QWidget *pParent, const VxProbeTable &probes)
    : CustomMainWindow(pParent)
    , pItem(pInfo)
    , m_probes(probes)
{
    if (!init())
        throw std::bad_alloc();
}

VxSDKFileClearDlg::~VxSDKFileClearDlg() = default;

bool VxSDKFileClearDlg::init()
{
    if (!pItem || !cTitleBar())
        return false;
    cTitleBar()->cSetTitleText(tr("SDK File Info"));
    cTitleBar()->cSetTitleControls(4);
    cAddCustomButtons({tr("Clear All")});
    setFixedSize(650, 472);
    // The file and folder columns cut long names short; their tool tips show
    // them whole even when this window has not been given the focus.
    setAttribute(Qt::WA_AlwaysShowToolTips);

    pTable = new (std::nothrow) CustomTableWidget(this);
    if (!pTable)
        return false;
    pTable->setColumnCount(3);
    pTable->setColumnWidth(0, 140);
    pTable->setColumnWidth(1, 380);
    pTable->setColumnWidth(2, 90);
    pTable->setFixedSize(615, 300);
    pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pTable->horizontalHeader()->setFixedHeight(34);
    pTable->setWordWrap(false);
    for (auto it = pItem->foundFiles.cbegin(); it != pItem->foundFiles.cend(); ++it) {
        for (const QString &strDir : it.value()) {
            if (!strDir.isEmpty() && !addRow(it.key(), strDir))
                return false;
        }
    }
    if (!connect(this, &CustomMainWindow::cSigButtonClick, this, &VxSDKFileClearDlg::onClearAllClicked))
        return false;

    pTips = new (std::nothrow) VxTipsWidget(this);
    if (!pTips)
        return false;
    pTips->setFixedWidth(614);
    pTips->setText(tipsText());
    pTips->adjustHeight();
    retranslateTexts();

    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pLayout = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    if (!pLayout)
        return false;
    // A smaller bottom margin keeps a two-line hint inside the fixed height
    // above the kit's button row.
    pLayout->setContentsMargins(18, 18, 18, 8);
    pLayout->setSpacing(0);
    pLayout->addWidget(pTable);
    pLayout->addStretch(1);
    pLayout->addWidget(pTips);
    cSetCentralWidget(pBody);
    return true;
}

bool VxSDKFileClearDlg::addRow(const QString &strFile, const QString &strDir)
{
    auto *pButton = new (std::nothrow) CustomPushButton(this);
    if (!pButton)
        return false;
    pButton->cSetBackgroundImage(QStringLiteral(":/Vetrix/Vetrix/Clear.png"), CustomObject::StateNormal);
    pButton->cSetBackgroundImage(QStringLiteral(":/Vetrix/Vetrix/Clear_dis.png"), CustomObject::StateDisabled);
    pButton->cSetBackgroundImage(QStringLiteral(":/Vetrix/Vetrix/Clear_sel.png"), CustomObject::StateHover);
    pButton->cSetBackgroundImage(QStringLiteral(":/Vetrix/Vetrix/Clear_sel.png"), CustomObject::StatePressed);
    if (!connect(pButton, &QPushButton::clicked, this, &VxSDKFileClearDlg::onClearRowClicked))
        return false;
    const int nRow = pTable->rowCount();
    pTable->insertRow(nRow);
    auto *pFile = new QTableWidgetItem(strFile);
    pFile->setToolTip(strFile);
    pTable->setItem(nRow, 0, pFile);
    auto *pDir = new QTableWidgetItem(strDir);
    pDir->setToolTip(strDir);
    pTable->setItem(nRow, 1, pDir);
    pTable->setCellWidget(nRow, 2, pButton);
    pTable->setRowHeight(nRow, kRowHeight);
    return true;
}

void VxSDKFileClearDlg::onClearRowClicked()
{
    auto *pButton = qobject_cast<QPushButton *>(sender());
    if (!pButton)
        return;
    int nRow = -1;
    for (int i = 0; i < pTable->rowCount(); ++i) {
        if (pTable->cellWidget(i, 2) == pButton) {
            nRow = i;
            break;
        }
    }
    if (nRow < 0 || !pTable->item(nRow, 0) || !pTable->item(nRow, 1))
        return;
    const QString strFile = pTable->item(nRow, 0)->text();
    const QString strDir = pTable->item(nRow, 1)->text();
    CSDKPathDetectInfo single;
    single.nItem = pItem->nItem;
    single.foundFiles.insert(strFile, {strDir});
    const VxProbeTable &probes = m_probes;
    const auto &clear = probes.probes(VxItems::SdkFiles).repair;
    const VxRepairStatus status = clear ? clear(single).status : VxRepairStatus::Done;
    // The row goes whatever the removal achieved, unless the rights for it
    // were missing: then the copy is still there and stays listed.
    if (status != VxRepairStatus::Done && fileExists(strDir, strFile)) {
        showFailure(status);
        return;
    }
    pTable->removeRow(nRow);
}

void VxSDKFileClearDlg::onClearAllClicked(int nIndex)
{
    if (pItem->bNormal) {
        cOnButtonClicked(nIndex);
        return;
    }
    const QMap<QString, QStringList> mapBefore = pItem->foundFiles;
    const VxProbeTable &probes = m_probes;
    const auto &clear = probes.probes(VxItems::SdkFiles).repair;
    const VxRepairStatus status = clear ? clear(*pItem).status : VxRepairStatus::Done;
    if (status != VxRepairStatus::Done) {
        // Without the rights some copies are still there: they stay listed
        // and the item stays exceptional.
        int nRow = 0;
        while (nRow < pTable->rowCount()) {
            QTableWidgetItem *pFile = pTable->item(nRow, 0);
            QTableWidgetItem *pDir = pTable->item(nRow, 1);
            if (pFile && pDir && fileExists(pDir->text(), pFile->text()))
                ++nRow;
            else
                pTable->removeRow(nRow);
        }
        if (pTable->rowCount() > 0) {
            pItem->foundFiles.clear();
            for (auto it = mapBefore.cbegin(); it != mapBefore.cend(); ++it) {
                for (const QString &strDir : it.value()) {
                    if (!strDir.isEmpty() && fileExists(strDir, it.key()))
                        pItem->foundFiles[it.key()].append(strDir);
                }
            }
            pItem->bNormal = pItem->foundFiles.isEmpty() ? 1 : 0;
            showFailure(status);
            return;
        }
    }
    pTable->setRowCount(0);
    bClearedAll = true;
    cResetCustomButtonNames({tr("OK")});
}

void VxSDKFileClearDlg::showFailure(VxRepairStatus status)
{
    CustomMessageBox::warning(this, repairFailureText(status), tr("Prompt"));
}

QString VxSDKFileClearDlg::repairFailureText(VxRepairStatus status) const
{
    switch (status) {
    case VxRepairStatus::NotAuthorized:
        return tr("The SDK files were not cleared: administrator rights are needed and were not granted.");
    case VxRepairStatus::HelperMissing:
        return VxPlatformTexts::sdkRightsUnavailable();
    case VxRepairStatus::Refused:
        return tr("The SDK files were not cleared: the repair helper refused to delete them.");
    case VxRepairStatus::Failed:
    case VxRepairStatus::NotFound:
    case VxRepairStatus::OtherSystem:
    case VxRepairStatus::Done:
        break;
    }
    return tr("The SDK files could not be deleted.");
}

void VxSDKFileClearDlg::hideEvent(QHideEvent *pEvent)
{
    if (pItem && pTable) {
        pItem->foundFiles.clear();
        for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
            QTableWidgetItem *pFile = pTable->item(nRow, 0);
            QTableWidgetItem *pDir = pTable->item(nRow, 1);
            if (pFile && pDir)
                pItem->foundFiles[pFile->text()].append(pDir->text());
        }
        pItem->bNormal = pItem->foundFiles.isEmpty() ? 1 : 0;
    }
    CustomMainWindow::hideEvent(pEvent);
}

QString VxSDKFileClearDlg::tipsText() const
{
    return VxPlatformTexts::sdkClearTips();
}

void VxSDKFileClearDlg::retranslateTexts()
{
    cTitleBar()->cSetTitleText(tr("SDK File Info"));
    pTable->setHorizontalHeaderLabels({tr("SDK File"), tr("Saving Path"), tr("Operation")});
}

void VxSDKFileClearDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && pTable && pTips) {
        retranslateTexts();
        pTips->setText(tipsText());
        pTips->adjustHeight();
        cResetCustomButtonNames({bClearedAll ? tr("OK") : tr("Clear All")});
    }
    CustomMainWindow::changeEvent(pEvent);
}
