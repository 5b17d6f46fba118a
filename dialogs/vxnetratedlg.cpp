#include "vxnetratedlg.h"

#include "cdetectinfo.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "vxtipswidget.h"

#include <QEvent>
#include <QHeaderView>
#include <QVBoxLayout>

#include <new>

VxNetRateDlg::VxNetRateDlg(CNetworkSpeedDetectInfo *pItem, QWidget *pParent)
    : CustomMainWindow(pParent)
{
    if (!pItem)
        throw std::bad_alloc();
    mapAdapterSpeeds = pItem->adapterSpeeds;
    if (!init())
        throw std::bad_alloc();
}

VxNetRateDlg::~VxNetRateDlg() = default;

QString VxNetRateDlg::rateText(int nMbps)
{
    if (nMbps < 0)
        return tr("Unknown");
    return QString::number(nMbps / 1000.0, 'f', 2) + QStringLiteral("Gbps");
}

bool VxNetRateDlg::init()
{
    if (!cTitleBar())
        return false;
    cTitleBar()->cSetTitleText(tr("Line Rate"));
    cTitleBar()->cSetTitleControls(4);
    cSetButtons(1);
    setFixedSize(430, 330);

    pTable = new (std::nothrow) CustomTableWidget(this);
    if (!pTable)
        return false;
    pTable->setColumnCount(2);
    pTable->setColumnWidth(0, 200);
    pTable->setColumnWidth(1, 100);
    pTable->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    pTable->horizontalHeader()->setFixedHeight(34);
    pTable->setWordWrap(false);
    for (auto it = mapAdapterSpeeds.cbegin(); it != mapAdapterSpeeds.cend(); ++it) {
        const int nRow = pTable->rowCount();
        pTable->insertRow(nRow);
        auto *pName = new QTableWidgetItem(it.key());
        pName->setToolTip(it.key());
        pTable->setItem(nRow, 0, pName);
        pTable->setItem(nRow, 1, new QTableWidgetItem(rateText(it.value())));
        pTable->setRowHeight(nRow, 34);
    }

    pTips = new (std::nothrow) VxTipsWidget(this);
    if (!pTips)
        return false;
    pTips->setFixedWidth(390);
    pTips->setIcon(QString::fromLatin1(VxTipsWidget::kWarningIcon));
    retranslateTexts();

    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pLayout = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    if (!pLayout)
        return false;
    pLayout->setContentsMargins(20, 0, 20, 0);
    pLayout->setSpacing(0);
    pLayout->addSpacing(20);
    pLayout->addWidget(pTable);
    pLayout->addStretch(1);
    pLayout->addWidget(pTips);
    pLayout->addStretch(1);
    cSetCentralWidget(pBody);
    return true;
}

void VxNetRateDlg::retranslateTexts()
{
    cTitleBar()->cSetTitleText(tr("Line Rate"));
    pTable->setHorizontalHeaderLabels({tr("Network Interfaces"), tr("Line Rate")});
    pTips->setText(tr("The line rate of the NIC is lower than 1Gbps. Please check if the NIC, network, or the switch "
                      "is abnormal."));
    pTips->adjustHeight();
}

void VxNetRateDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && pTable && pTips) {
        retranslateTexts();
        for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
            QTableWidgetItem *pName = pTable->item(nRow, 0);
            QTableWidgetItem *pRate = pTable->item(nRow, 1);
            if (pName && pRate)
                pRate->setText(rateText(mapAdapterSpeeds.value(pName->text())));
        }
    }
    CustomMainWindow::changeEvent(pEvent);
}
