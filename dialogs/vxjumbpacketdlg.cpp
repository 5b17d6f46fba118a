#include "vxjumbpacketdlg.h"

#include "cdetectinfo.h"
#include "custommessagebox.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "vxoperaterunner.h"
#include "vxplatformtexts.h"

#include <QEvent>
#include <QHeaderView>
#include <QVBoxLayout>

#include <new>

namespace {
const int kItemId = 256;

void setCellText(QTableWidget *pTable, int nRow, int nColumn, const QString &strText)
{
    if (QTableWidgetItem *pCell = pTable->item(nRow, nColumn))
        pCell->setText(strText);
    else
        pTable->setItem(nRow, nColumn, new QTableWidgetItem(strText));
}
} // namespace

VxJumbPacketDlg::VxJumbPacketDlg(CJumboPacketDetectInfo *pInfo, QWidget *pParent, const VxProbeTable &probes)
    : CustomMainWindow(pParent)
    , pItem(pInfo)
    , m_probes(probes)
{
    if (!init())
        throw std::bad_alloc();
}

VxJumbPacketDlg::~VxJumbPacketDlg() = default;

bool VxJumbPacketDlg::init()
{
    if (!pItem || !cTitleBar())
        return false;
    cTitleBar()->cSetTitleText(tr("Jumbo Frame Info"));
    cTitleBar()->cSetTitleControls(4);
    cAddCustomButtons({buttonText()});
    setFixedSize(430, 300);

    pTable = new (std::nothrow) CustomTableWidget(this);
    if (!pTable)
        return false;
    pTable->setColumnCount(2);
    pTable->setColumnWidth(0, 200);
    pTable->setColumnWidth(1, 150);
    pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pTable->setHorizontalHeaderLabels({tr("Network Interfaces"), tr("Jumbo Frame Info")});
    pTable->horizontalHeader()->setFixedHeight(34);
    pTable->setWordWrap(false);
    fillTable();

    if (!connect(this, &CustomMainWindow::cSigButtonClick, this, &VxJumbPacketDlg::onButtonClicked))
        return false;

    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pLayout = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    if (!pLayout)
        return false;
    pLayout->setContentsMargins(20, 0, 20, 0);
    pLayout->setSpacing(0);
    pLayout->addSpacing(20);
    pLayout->addWidget(pTable);
    pLayout->addStretch(1);
    cSetCentralWidget(pBody);
    return true;
}

QString VxJumbPacketDlg::stateText(const QString &strInterface) const
{
    if (pItem->jumboStates.value(strInterface) == 1)
        return tr("Enabled. Value: %1 ").arg(pItem->jumboValues.value(strInterface));
    return tr("Disabled");
}

void VxJumbPacketDlg::fillTable()
{
    if (pItem->jumboStates.isEmpty())
        return;
    int nRow = 0;
    for (auto it = pItem->jumboStates.cbegin(); it != pItem->jumboStates.cend(); ++it, ++nRow) {
        if (nRow >= pTable->rowCount())
            pTable->insertRow(nRow);
        setCellText(pTable, nRow, 0, it.key());
        setCellText(pTable, nRow, 1, stateText(it.key()));
    }
}

QString VxJumbPacketDlg::buttonText() const
{
    return pItem->bNormal ? tr("OK") : tr("Enable Jumbo Frame for All NICs");
}

void VxJumbPacketDlg::onButtonClicked(int nIndex)
{
    if (pItem->bNormal) {
        cOnButtonClicked(nIndex);
        return;
    }
    VxOperateRunner runner(false, kItemId, this, tr("Enabling jumbo frame..."), {{kItemId, pItem}}, m_probes);
    runner.run();
    const VxRepairStatus status = runner.outcome(kItemId).status;
    fillTable();
    cResetCustomButtonNames({buttonText()});
    if (status != VxRepairStatus::Done && !pItem->bNormal)
        CustomMessageBox::warning(this, repairFailureText(status), tr("Prompt"));
}

QString VxJumbPacketDlg::repairFailureText(VxRepairStatus status) const
{
    switch (status) {
    case VxRepairStatus::NotAuthorized:
        return tr("Jumbo frames were not enabled: administrator rights are needed and were not granted.");
    case VxRepairStatus::HelperMissing:
        return VxPlatformTexts::jumboRightsUnavailable();
    case VxRepairStatus::Refused:
        return tr("Jumbo frames were not enabled: the repair helper refused the setting.");
    case VxRepairStatus::Failed:
    case VxRepairStatus::NotFound:
    case VxRepairStatus::OtherSystem:
    case VxRepairStatus::Done:
        break;
    }
    return tr("Jumbo frames could not be enabled on every network interface.");
}

void VxJumbPacketDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && pTable) {
        cTitleBar()->cSetTitleText(tr("Jumbo Frame Info"));
        pTable->setHorizontalHeaderLabels({tr("Network Interfaces"), tr("Jumbo Frame Info")});
        for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
            QTableWidgetItem *pName = pTable->item(nRow, 0);
            if (pName)
                setCellText(pTable, nRow, 1, stateText(pName->text()));
        }
        cResetCustomButtonNames({buttonText()});
    }
    CustomMainWindow::changeEvent(pEvent);
}
