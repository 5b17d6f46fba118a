#include "vxenvcheckdlg.h"

#include "cdetectinfo.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "custommessagebox.h"
#include "envvars.h"
#include "vxoperaterunner.h"
#include "vxplatformtexts.h"

#include <QEvent>
#include <QHeaderView>
#include <QVBoxLayout>

#include <algorithm>
#include <new>

namespace {
const int kRowHeight = 38;
const int kHeaderHeight = 34;
const int kTableWidth = 735;
const int kItemId = 2;
} // namespace

VxEnvCheckDlg::VxEnvCheckDlg(CEnvDetectInfo *pInfo, QWidget *pParent, const VxProbeTable &probes)
    : CustomMainWindow(pParent)
    , pItem(pInfo)
    , m_probes(probes)
{
    if (!init())
        throw std::bad_alloc();
}

VxEnvCheckDlg::~VxEnvCheckDlg() = default;

bool VxEnvCheckDlg::init()
{
    if (!pItem || !cTitleBar())
        return false;
    cTitleBar()->cSetTitleText(tr("Environment Variables"));
    cTitleBar()->cSetTitleControls(4);
    cAddCustomButtons({buttonText()});

    pTable = new (std::nothrow) CustomTableWidget(this);
    if (!pTable)
        return false;
    pTable->setColumnCount(3);
    pTable->setColumnWidth(0, 220);
    pTable->setColumnWidth(1, 420);
    pTable->setColumnWidth(2, 90);
    pTable->setFixedSize(kTableWidth, 200);
    pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pTable->horizontalHeader()->setFixedHeight(kHeaderHeight);
    pTable->setWordWrap(false);
    // The table is sized to its rows: no scroll bars for the frame's pixels.
    pTable->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pTable->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    retranslateTexts();
    fillTable();
    pTable->setFixedSize(kTableWidth, pTable->rowCount() * kRowHeight + kHeaderHeight);
    setFixedSize(770, pTable->height() + 100);

    if (!connect(this, &CustomMainWindow::cSigButtonClick, this, &VxEnvCheckDlg::onButtonClicked))
        return false;

    auto *pBody = new (std::nothrow) QWidget(this);
    if (!pBody)
        return false;
    auto *pLayout = new (std::nothrow) QVBoxLayout(pBody);
    if (!pLayout)
        return false;
    // The dialog is exactly the table plus the kit's frame (title bar and
    // button row, 100 pixels): the table is centred without vertical margins.
    pLayout->setContentsMargins(16, 0, 17, 0);
    pLayout->setSpacing(0);
    pLayout->addWidget(pTable);
    pLayout->addStretch(1);
    cSetCentralWidget(pBody);
    return true;
}

QString VxEnvCheckDlg::valueToolTip(const QString &strValue, QChar cSeparator)
{
    QStringList listParts = strValue.split(cSeparator, Qt::SkipEmptyParts);
    QString strTip;
    if (listParts.size() > 1) {
        std::sort(listParts.begin(), listParts.end());
        for (QString &strPart : listParts)
            strPart += cSeparator;
        strTip = listParts.join(QStringLiteral("\r\n"));
    }
    return strTip.isEmpty() ? strValue : strTip;
}

void VxEnvCheckDlg::fillTable()
{
    pTable->setRowCount(0);
    if (pItem->currentValues.isEmpty())
        return;
    const QChar cSeparator = EnvVars::layout().cSeparator;
    for (auto it = pItem->currentValues.cbegin(); it != pItem->currentValues.cend(); ++it) {
        const int nRow = pTable->rowCount();
        pTable->insertRow(nRow);
        pTable->setItem(nRow, 0, new QTableWidgetItem(it.key()));
        auto *pValue = new QTableWidgetItem(it.value());
        pValue->setToolTip(valueToolTip(it.value(), cSeparator));
        pTable->setItem(nRow, 1, pValue);
        const bool bException = pItem->missingValues.contains(it.key());
        auto *pStatus = new QTableWidgetItem(statusText(it.key()));
        pStatus->setToolTip(statusToolTip(it.key()));
        if (bException)
            pStatus->setForeground(QBrush(Qt::red));
        pTable->setItem(nRow, 2, pStatus);
        pTable->setRowHeight(nRow, kRowHeight);
    }
}

QString VxEnvCheckDlg::statusText(const QString &strName) const
{
    if (pItem->missingValues.contains(strName))
        return tr("Exception");
    // Set machine-wide already; this login does not see it yet.
    if (pItem->pendingValues.contains(strName))
        return tr("Next login");
    return tr("Normal");
}

QString VxEnvCheckDlg::statusToolTip(const QString &strName) const
{
    if (pItem->missingValues.contains(strName) || !pItem->pendingValues.contains(strName))
        return QString();
    return tr("Set machine-wide to \"%1\". It takes effect at the next login.").arg(pItem->pendingValues.value(strName));
}

QString VxEnvCheckDlg::buttonText() const
{
    return pItem->bNormal ? tr("OK") : tr("Repair");
}

void VxEnvCheckDlg::onButtonClicked(int nIndex)
{
    if (pItem->bNormal) {
        cOnButtonClicked(nIndex);
        return;
    }
    VxOperateRunner runner(false, kItemId, this, tr("Repairing environment variables..."), {{kItemId, pItem}}, m_probes);
    runner.run();
    const VxRepairStatus status = runner.outcome(kItemId).status;
    // A fresh check, here on the GUI thread, so both maps and the flag are current.
    const VxProbeTable &probes = m_probes;
    if (const auto &check = probes.probes(kItemId).check)
        check(*pItem);
    fillTable();
    cResetCustomButtonNames({buttonText()});
    if (status != VxRepairStatus::Done && !pItem->bNormal)
        CustomMessageBox::warning(this, repairFailureText(status), tr("Prompt"));
}

QString VxEnvCheckDlg::repairFailureText(VxRepairStatus status) const
{
    switch (status) {
    case VxRepairStatus::NotAuthorized:
        return tr("The environment variables were not repaired: administrator rights are needed and were not granted.");
    case VxRepairStatus::HelperMissing:
        return VxPlatformTexts::envRightsUnavailable();
    case VxRepairStatus::Refused:
        return tr("The environment variables were not repaired: the repair helper refused the values.");
    case VxRepairStatus::Failed:
    case VxRepairStatus::NotFound:
    case VxRepairStatus::OtherSystem:
    case VxRepairStatus::Done:
        break;
    }
    return tr("The environment variables could not be written. Nothing was changed.");
}

void VxEnvCheckDlg::retranslateTexts()
{
    cTitleBar()->cSetTitleText(tr("Environment Variables"));
    pTable->setHorizontalHeaderLabels({tr("Variable Name"), tr("Variable Value"), tr("Status")});
}

void VxEnvCheckDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && pTable) {
        retranslateTexts();
        for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
            QTableWidgetItem *pName = pTable->item(nRow, 0);
            QTableWidgetItem *pStatus = pTable->item(nRow, 2);
            if (pName && pStatus) {
                pStatus->setText(statusText(pName->text()));
                pStatus->setToolTip(statusToolTip(pName->text()));
            }
        }
        cResetCustomButtonNames({buttonText()});
    }
    CustomMainWindow::changeEvent(pEvent);
}
