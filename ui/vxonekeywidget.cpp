#include "vxonekeywidget.h"

#include "custom.h"
#include "customloadingdialog.h"
#include "custompushbutton.h"
#include "vxinterprogressbar.h"
#include "vxonekeyitems.h"
#include "vxonekeyresult.h"
#include "vxonekeyresulttree.h"
#include "vxoperatethread.h"
#include "vxstateitem.h"
#include "vxtitle.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMovie>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <new>

int &VxOneKeyWidget::selectedGroups()
{
    return VxOneKeyRunItems::selectedGroups();
}

quint32 VxOneKeyWidget::groupMask(int nGroup)
{
    return VxOneKeyRunItems::groupMask(nGroup);
}

namespace {
const char *const kGradeIcons[3] = {":/Vetrix/Vetrix/ResultNormal.png", ":/Vetrix/Vetrix/ResultMedium.png",
                                    ":/Vetrix/Vetrix/ResultSerious.png"};
} // namespace

VxOneKeyWidget::VxOneKeyWidget(QWidget *pParent)
    : QWidget(pParent)
{
    if (!init())
        throw std::bad_alloc();
    render(true);
}

VxOneKeyWidget::~VxOneKeyWidget()
{
    if (m_pThread && m_pThread->isRunning())
        m_pThread->stop(true);
}

bool VxOneKeyWidget::init()
{
    m_pThread = new (std::nothrow) VxOperateThread(this);
    if (!m_pThread)
        return false;
    m_pItems.reset(new (std::nothrow) VxOneKeyRunItems(m_pThread->probeTable()));
    if (!m_pItems)
        return false;
    m_pRun.reset(new (std::nothrow) VxOneKeyState(*m_pItems));
    if (!m_pRun)
        return false;

    setObjectName(QStringLiteral("VxOneKeyWidget"));
    setAutoFillBackground(true);
    QPalette pagePalette = palette();
    pagePalette.setColor(QPalette::Window, QColor(QStringLiteral("#F2F3F5")));
    setPalette(pagePalette);

    auto *pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(0, 0, 0, 0);
    pLayout->setSpacing(0);

    auto *pStrip = new (std::nothrow) VxTitle(this);
    if (!pStrip || !buildTopStrip(pStrip))
        return false;
    pLayout->addWidget(pStrip);

    m_pStack = new QStackedWidget(this);
    m_pEmptyPage = new QWidget(m_pStack);
    auto *pEmptyLayout = new QVBoxLayout(m_pEmptyPage);
    auto *pEmptyImage = new QLabel(m_pEmptyPage);
    pEmptyImage->setPixmap(QIcon(QStringLiteral(":/Vetrix/Vetrix/DetectEmpty.png")).pixmap(QSize(160, 120)));
    pEmptyImage->setAlignment(Qt::AlignCenter);
    m_pEmptyText = new QLabel(m_pEmptyPage);
    m_pEmptyText->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    QPalette emptyPalette = m_pEmptyText->palette();
    emptyPalette.setColor(QPalette::WindowText, QColor(QStringLiteral("#9AA0AB")));
    m_pEmptyText->setPalette(emptyPalette);
    pEmptyLayout->addStretch(2);
    pEmptyLayout->addWidget(pEmptyImage);
    pEmptyLayout->addWidget(m_pEmptyText);
    pEmptyLayout->addStretch(3);
    m_pResult = new (std::nothrow) VxOneKeyResult(m_pStack);
    if (!m_pResult)
        return false;
    VxOneKeyResult *pResult = m_pResult;
    m_pRun->setGradeCount([pResult](int nGrade) { return pResult->countOfSeverity(nGrade); });
    m_pStack->addWidget(m_pEmptyPage);
    m_pStack->addWidget(m_pResult);
    m_pStack->setCurrentWidget(m_pEmptyPage);

    auto *pBody = new QWidget(this);
    auto *pBodyLayout = new QVBoxLayout(pBody);
    pBodyLayout->setContentsMargins(16, 12, 16, 12);
    pBodyLayout->addWidget(m_pStack);
    pLayout->addWidget(pBody, 1);

    m_pLoading = new (std::nothrow) CustomLoadingDialog(this);
    if (!m_pLoading)
        return false;
    m_pLoading->setModal(true);

    if (!connectWorker())
        return false;
    if (!connect(m_pButton1, &QPushButton::clicked, this, &VxOneKeyWidget::onOperateClicked1)
        || !connect(m_pButton2, &QPushButton::clicked, this, &VxOneKeyWidget::onOperateClicked2)
        || !connect(m_pResult, &VxOneKeyResult::sigRemoveOptimizeItem, this, &VxOneKeyWidget::onRemoveOptimizeItem))
        return false;
    changeEvent(nullptr);
    return true;
}

bool VxOneKeyWidget::buildTopStrip(QWidget *pStrip)
{
    pStrip->setFixedHeight(150);
    m_pImage = new QLabel(pStrip);
    m_pImage->setFixedSize(102, 102);
    m_pImage->setScaledContents(true);
    m_pMovie = new QMovie(QStringLiteral(":/Vetrix/Vetrix/Detecting.gif"), QByteArray(), this);

    m_pTitle = new QLabel(pStrip);
    m_pTitle->setFixedHeight(26);
    m_pDetail = new QLabel(pStrip);
    m_pDetail->setFixedHeight(20);
    const QBrush labelBrush =
        Custom::getDataBaseColor(QStringLiteral("DB_COLOR_VetrixToolColor_VxOneKeyWidget_TopWidget_Label_Font"));
    const QColor labelColor = labelBrush.style() == Qt::NoBrush ? VxTitle::textColor() : labelBrush.color();
    for (QLabel *pLabel : {m_pTitle, m_pDetail}) {
        QPalette labelPalette = pLabel->palette();
        labelPalette.setColor(QPalette::WindowText, pLabel == m_pTitle ? VxTitle::strongTextColor() : labelColor);
        pLabel->setPalette(labelPalette);
    }
    for (QLabel *&pCounter : m_pCounters) {
        pCounter = new QLabel(pStrip);
        pCounter->setFixedHeight(24);
        QPalette counterPalette = pCounter->palette();
        counterPalette.setColor(QPalette::WindowText, labelColor);
        pCounter->setPalette(counterPalette);
    }
    m_pProgress = new VxInterProgressBar(pStrip);
    m_pProgress->setFixedHeight(20);
    m_pProgress->setMinimumWidth(360);

    m_pButton1 = new CustomPushButton(pStrip);
    m_pButton1->cSetButtonStyle(CustomPushButton::Flat);
    m_pButton1->setFixedHeight(20);
    m_pButton1->setCursor(Qt::PointingHandCursor);
    m_pButton1->setStyleSheet(QStringLiteral("QPushButton { color: #FA6500; background: transparent; border: none; "
                                             "text-decoration: underline; padding: 0 4px; }"
                                             "QPushButton:disabled { color: #C9CDD4; }"));
    m_pButton2 = new CustomPushButton(pStrip);
    m_pButton2->setFixedSize(135, 44);
    m_pButton2->setCursor(Qt::PointingHandCursor);
    m_pButton2->setStyleSheet(QStringLiteral(
        "QPushButton { color: white; border: none; border-radius: 22px; font-size: 15px; font-weight: bold;"
        " background: qlineargradient(x1:0, y1:0, x2:1, y2:1, stop:0 #FF9900, stop:1 #F76900); }"
        "QPushButton:hover { background: qlineargradient(x1:0, y1:0, x2:1, y2:1, stop:0 #FFA826, stop:1 #FF7A14); }"
        "QPushButton:pressed { background: #E86200; }"
        "QPushButton:disabled { background: #F3C59A; }"));

    for (int i = 0; i < 3; ++i)
        m_pStateItems[i] = new VxStateItem(QString::fromLatin1(kGradeIcons[i]), pStrip);

    // image | title, detail row, state tiles | buttons
    auto *pStripLayout = new QHBoxLayout(pStrip);
    pStripLayout->setContentsMargins(32, 20, 32, 20);
    pStripLayout->setSpacing(24);
    pStripLayout->addWidget(m_pImage, 0, Qt::AlignVCenter);

    auto *pTextColumn = new QVBoxLayout;
    pTextColumn->setSpacing(8);
    pTextColumn->addStretch();
    pTextColumn->addWidget(m_pTitle);
    m_pBottomBar = new QHBoxLayout;
    m_pBottomBar->setContentsMargins(0, 0, 0, 0);
    pTextColumn->addLayout(m_pBottomBar);
    auto *pTiles = new QHBoxLayout;
    pTiles->setSpacing(12);
    for (VxStateItem *pItem : m_pStateItems)
        pTiles->addWidget(pItem);
    pTiles->addStretch();
    pTextColumn->addSpacing(4);
    pTextColumn->addLayout(pTiles);
    pTextColumn->addStretch();
    pStripLayout->addLayout(pTextColumn, 1);

    auto *pButtons = new QHBoxLayout;
    pButtons->setSpacing(16);
    pButtons->addWidget(m_pButton1, 0, Qt::AlignVCenter);
    pButtons->addWidget(m_pButton2, 0, Qt::AlignVCenter);
    pStripLayout->addLayout(pButtons);
    return true;
}

bool VxOneKeyWidget::connectWorker()
{
    return connect(m_pThread, &VxOperateThread::sigStartOperate, this, &VxOneKeyWidget::onStartOperate)
        && connect(m_pThread, &VxOperateThread::sigEndOperate, this, &VxOneKeyWidget::onEndOperate)
        && connect(m_pThread, &VxOperateThread::sigStartDetectItem, this, &VxOneKeyWidget::onStartDetectItem)
        && connect(m_pThread, &VxOperateThread::sigEndDetectItem, this, &VxOneKeyWidget::onEndDetectItem)
        && connect(m_pThread, &VxOperateThread::sigStartOptimizeItem, this, &VxOneKeyWidget::onStartOptimizeItem)
        && connect(m_pThread, &VxOperateThread::sigEndOptimizeItem, this, &VxOneKeyWidget::onEndOptimizeItem)
        && connect(m_pResult, &VxOneKeyResult::sigRemoveOptimizeItem, m_pThread, &VxOperateThread::onRemoveItem);
}

bool VxOneKeyWidget::allWidgetsPresent() const
{
    return m_pThread && m_pRun && m_pImage && m_pMovie && m_pTitle && m_pDetail && m_pCounters[0] && m_pCounters[1]
        && m_pCounters[2] && m_pProgress && m_pButton1 && m_pButton2 && m_pStateItems[0] && m_pStateItems[1]
        && m_pStateItems[2] && m_pStack && m_pResult && m_pBottomBar;
}
