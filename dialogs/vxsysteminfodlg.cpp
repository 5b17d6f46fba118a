#include "vxsysteminfodlg.h"

#include "cdetectinfo.h"
#include "custompushbutton.h"
#include "customtablewidget.h"
#include "customtitlebar.h"

#include <QClipboard>
#include <QEvent>
#include <QGuiApplication>
#include <QHeaderView>
#include <QVBoxLayout>

#include <new>

namespace {
const int kLabelWidth = 150;
const int kValueWidth = 330;
const int kMinRowHeight = 34;
} // namespace

VxSystemInfoDlg::VxSystemInfoDlg(const CSystemDetectInfo &info, QWidget *pParent)
    : CustomMainWindow(pParent)
    , listValues{info.cpu, info.cpuCount, info.availableMemory, info.byteOrder, info.operatingSystem,
                 info.graphicsChips, info.resolution}
{
    if (!init())
        throw std::bad_alloc();
}

VxSystemInfoDlg::~VxSystemInfoDlg() = default;

QStringList VxSystemInfoDlg::labels() const
{
    return {tr("CPU"),       tr("CPU Core Number"), tr("Available Memory"),  tr("Endianess"),
            tr("Operating System"), tr("Graphic Chipset"), tr("Screen Resolution")};
}

bool VxSystemInfoDlg::init()
{
    if (!cTitleBar())
        return false;
    cTitleBar()->cSetTitleControls(4);
    cAddCustomButtons({tr("Copy")});
    cSetButtons(1);
    if (cButton(0))
        cButton(0)->cSetButtonStyle(CustomPushButton::Secondary);
    if (!connect(this, &CustomMainWindow::cSigButtonClick, this, &VxSystemInfoDlg::onButtonClicked))
        return false;

    pTable = new (std::nothrow) CustomTableWidget(this);
    if (!pTable)
        return false;
    pTable->setColumnCount(2);
    pTable->horizontalHeader()->hide();
    pTable->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    pTable->setColumnWidth(0, kLabelWidth);
    pTable->setColumnWidth(1, kValueWidth);
    pTable->setWordWrap(true);
    pTable->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pTable->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    pTable->setRowCount(listValues.size());
    for (int nRow = 0; nRow < listValues.size(); ++nRow) {
        pTable->setItem(nRow, 0, new QTableWidgetItem);
        auto *pValue = new QTableWidgetItem(listValues.at(nRow));
        pValue->setToolTip(listValues.at(nRow));
        pTable->setItem(nRow, 1, pValue);
    }
    retranslateTexts();

    auto *pBody = new (std::nothrow) QWidget(this);
    auto *pLayout = pBody ? new (std::nothrow) QVBoxLayout(pBody) : nullptr;
    if (!pLayout)
        return false;
    pLayout->setContentsMargins(20, 20, 20, 10);
    pLayout->setSpacing(0);
    pLayout->addWidget(pTable);
    pLayout->addStretch(1);
    cSetCentralWidget(pBody);
    return true;
}

void VxSystemInfoDlg::retranslateTexts()
{
    cTitleBar()->cSetTitleText(tr("System Information"));
    setWindowTitle(tr("System Information"));
    const QStringList listLabels = labels();
    int nHeight = 2;
    for (int nRow = 0; nRow < pTable->rowCount(); ++nRow) {
        if (QTableWidgetItem *pLabel = pTable->item(nRow, 0))
            pLabel->setText(listLabels.value(nRow));
        pTable->resizeRowToContents(nRow);
        pTable->setRowHeight(nRow, qMax(pTable->rowHeight(nRow) + 8, kMinRowHeight));
        nHeight += pTable->rowHeight(nRow);
    }
    pTable->setFixedSize(kLabelWidth + kValueWidth + 2, nHeight);
    setFixedSize(kLabelWidth + kValueWidth + 2 + 40, nHeight + 130);
}

QString VxSystemInfoDlg::clipboardText() const
{
    const QStringList listLabels = labels();
    QStringList listLines;
    for (int i = 0; i < listValues.size(); ++i)
        listLines << listLabels.value(i) + QStringLiteral(": ") + listValues.at(i);
    return listLines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

void VxSystemInfoDlg::onButtonClicked(int nIndex)
{
    if (nIndex != 0)
        return; // OK: the frame closes the dialog
    if (QClipboard *pClipboard = QGuiApplication::clipboard())
        pClipboard->setText(clipboardText());
}

void VxSystemInfoDlg::changeEvent(QEvent *pEvent)
{
    if (pEvent->type() == QEvent::LanguageChange && pTable) {
        retranslateTexts();
        cResetCustomButtonNames({tr("Copy")});
    }
    CustomMainWindow::changeEvent(pEvent);
}
