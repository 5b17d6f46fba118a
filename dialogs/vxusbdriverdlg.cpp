#include "vxusbdriverdlg.h"

#include "cdetectinfo.h"
#include "customlinewidget.h"
#include "customtablewidget.h"
#include "customtitlebar.h"
#include "vxtipswidget.h"
#include "vxusbdriverdelegate.h"

#include <QEvent>
#include <QHeaderView>
#include <QVBoxLayout>

#include <new>

namespace {
const QString kLineBreak = QStringLiteral("\r\n");
} // namespace

VxUSBDriverDlg::VxUSBDriverDlg(CUSBControllerDriverInfo *pInfo, QWidget *pParent)
    : CustomMainWindow(pParent)
    , pItem(pInfo)
{
    if (!init())
        throw std::bad_alloc();
}

VxUSBDriverDlg::~VxUSBDriverDlg() = default;

int VxUSBDriverDlg::rowHeightFor(const QString &strWrappedLabel, const QString &strWrappedValue)
{
    return 36 + 26 * qMax(strWrappedLabel.count(kLineBreak), strWrappedValue.count(kLineBreak));
}

QStringList VxUSBDriverDlg::labels() const
{
    return {tr("Driver Name:"), tr("Driver Provider:"), tr("Driver's Latest Update Time:"), tr("Driver Version:")};
}

bool VxUSBDriverDlg::hasNoController() const
{
    return pItem && pItem->nControllers == 0;
}

int VxUSBDriverDlg::labelWrap() const
{
    return hasNoController() ? kSpanWrap : kLabelWrap;
}

QString VxUSBDriverDlg::noControllerText() const
{
    return tr("No USB host controller was found.");
}

QString VxUSBDriverDlg::tipsText() const
{
    if (hasNoController())
        return tr("USB3 Vision cameras need a USB 3.0 host controller. Install one, or check that it is enabled in the "
                  "BIOS and that its driver is loaded.");
    return tr("The latest update time of the USB controller driver is too early, which may lead to exception when the "
              "U3V Vision camera acquires streams. Please update the driver.");
}

bool VxUSBDriverDlg::init()
{
    if (!pItem || !cTitleBar())
        return false;
    cTitleBar()->cSetTitleText(tr("USB Controller Driver Info"));
    cTitleBar()->cSetTitleControls(4);
    cSetButtons(1);
    setFixedSize(415, 470);

    pTable = new (std::nothrow) CustomTableWidget(this);
    auto *pDelegate = new (std::nothrow) VxUsbDriverDelegate(this);
    if (!pTable || !pDelegate)
        return false;
    pTable->setItemDelegate(pDelegate);
    pTable->cSetStyleSelector(QStringLiteral("USBController"));
    pTable->setColumnCount(2);
    pTable->setColumnWidth(0, 180);
    pTable->setColumnWidth(1, 190);
    pTable->setFixedSize(370, 300);
    pTable->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pTable->horizontalHeader()->hide();
    pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    pTable->setWordWrap(true);
    if (hasNoController()) {
        // One line across both columns instead of four bare labels.
        addRow(noControllerText(), QString());
        pTable->setSpan(0, 0, 1, 2);
    } else {
        const QStringList listLabels = labels();
        const QStringList listValues = {pItem->driverDesc, pItem->providerName, pItem->driverDate, pItem->driverVersion};
        for (int i = 0; i < listLabels.size(); ++i)
            addRow(listLabels.at(i), listValues.at(i));
    }

    if (!connect(this, &CustomMainWindow::cSigButtonClick, this, &CustomMainWindow::cOnButtonClicked))
        return false;

    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pLayout = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    pLine = new (std::nothrow) CustomLineWidget(1, this);
    pTips = new (std::nothrow) VxTipsWidget(this);
    if (!pLayout || !pLine || !pTips)
        return false;
    pLayout->setContentsMargins(20, 0, 20, 0);
    pLayout->setSpacing(0);
    pLayout->addSpacing(20);
    pLayout->addWidget(pTable);
    pLayout->addStretch(1);
    pLine->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    pLine->setFixedHeight(1);
    pLine->cSetBackgroundColor(QStringLiteral("DB_COLOR_VetrixToolColor_VxUSBDriverDlg_SpliteLine_Background"));
    pLayout->addWidget(pLine);
    pLayout->addSpacing(10);
    pTips->setFixedWidth(370);
    pTips->setText(tipsText());
    pTips->adjustHeight();
    pLayout->addWidget(pTips);
    pLayout->addSpacing(20);
    if (pItem->bNormal) {
        pLine->hide();
        pTips->hide();
    } else {
        fitTable();
    }
    cSetCentralWidget(pBody);
    return true;
}

void VxUSBDriverDlg::fitTable()
{
    // With the warning shown, the kit's frame leaves less than 300 pixels for
    // the table: it gives up its empty space below the rows so the warning
    // stays clear of it.
    int nRows = 2 * pTable->frameWidth();
    for (int nRow = 0; nRow < pTable->rowCount(); ++nRow)
        nRows += pTable->rowHeight(nRow);
    const int nFrame = 100; // title bar, button row and border of the kit's window
    const int nRest = 20 + 1 + 10 + pTips->height() + 20;
    const int nRoom = height() - nFrame - nRest;
    pTable->setFixedHeight(qBound(qMin(nRows, 300), nRoom, 300));
}

void VxUSBDriverDlg::addRow(const QString &strLabel, const QString &strValue)
{
    const int nRow = pTable->rowCount();
    pTable->insertRow(nRow);
    const QFontMetrics metrics(pTable->font());
    const QString strWrappedLabel = VxTipsWidget::wrapText(strLabel, labelWrap(), metrics);
    const QString strWrappedValue = VxTipsWidget::wrapText(strValue, kValueWrap, metrics);
    pTable->setRowHeight(nRow, rowHeightFor(strWrappedLabel, strWrappedValue));
    pTable->setItem(nRow, 0, new QTableWidgetItem(strWrappedLabel));
    pTable->setItem(nRow, 1, new QTableWidgetItem(strWrappedValue));
}

void VxUSBDriverDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && pTable && pTips) {
        cTitleBar()->cSetTitleText(tr("USB Controller Driver Info"));
        const QFontMetrics metrics(pTable->font());
        const QStringList listLabels = hasNoController() ? QStringList{noControllerText()} : labels();
        for (int nRow = 0; nRow < pTable->rowCount() && nRow < listLabels.size(); ++nRow) {
            const QString strWrapped = VxTipsWidget::wrapText(listLabels.at(nRow), labelWrap(), metrics);
            if (QTableWidgetItem *pLabel = pTable->item(nRow, 0))
                pLabel->setText(strWrapped);
            const QTableWidgetItem *pValue = pTable->item(nRow, 1);
            pTable->setRowHeight(nRow, rowHeightFor(strWrapped, pValue ? pValue->text() : QString()));
        }
        pTips->setText(tipsText());
        pTips->adjustHeight();
        if (!pItem->bNormal)
            fitTable();
    }
    CustomMainWindow::changeEvent(pEvent);
}
