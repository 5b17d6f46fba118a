// The one-key page's state machine: what each state shows, the two operate
// buttons, the worker's progress signals and the export.
#include "vxonekeywidget.h"

#include "cdetectinfo.h"
#include "custom.h"
#include "customloadingdialog.h"
#include "custommessagebox.h"
#include "custompushbutton.h"
#include "customsavedonehintdlg.h"
#include "luinterface.h"
#include "vxinterprogressbar.h"
#include "vxitems.h"
#include "vxonekeyresult.h"
#include "vxoperatethread.h"
#include "vxresulttext.h"
#include "vxstateitem.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMovie>
#include <QStackedWidget>

namespace {
constexpr int kGrades = 3; // normal, serious (medium), fatal (serious)
}

void VxOneKeyWidget::applyFonts()
{
    QFont titleFont = m_pTitle->font();
    titleFont.setPixelSize(18);
    titleFont.setWeight(m_nState == Optimizing ? QFont::Normal : QFont::Bold);
    m_pTitle->setFont(titleFont);
    QFont detailFont = m_pDetail->font();
    detailFont.setPixelSize(13);
    m_pDetail->setFont(detailFont);
    for (QLabel *pCounter : m_pCounters) {
        QFont counterFont = pCounter->font();
        counterFont.setPixelSize(13);
        pCounter->setFont(counterFont);
    }
}

void VxOneKeyWidget::applyState(int nState, bool bEntering)
{
    if (!allWidgetsPresent())
        return;
    for (bool &bShown : m_bCounterShown)
        bShown = false;
    m_pButton1->setEnabled(true);
    m_nState = nState;
    applyFonts();
    emit sigExportEnable(false);

    auto setImage = [this](const char *pPath) {
        m_pMovie->stop();
        m_pImage->setMovie(nullptr);
        m_pImage->setPixmap(QIcon(QString::fromLatin1(pPath)).pixmap(m_pImage->size()));
    };
    auto startAnimation = [this] {
        m_pImage->setMovie(m_pMovie);
        m_pMovie->start();
    };

    switch (nState) {
    case Idle:
        setImage(":/Vetrix/Vetrix/DetectNothing.png");
        m_pTitle->setText(tr("Vetrix Tool"));
        m_pDetail->setText(tr("Check the PC system, driver, and software running environment."));
        m_bDetailShown = true;
        m_bProgressShown = false;
        m_pButton2->setText(tr("Start Diagnosis"));
        break;
    case Detecting:
        startAnimation();
        m_pTitle->setText(m_strCurrentTitle);
        m_bDetailShown = false;
        m_bProgressShown = true;
        m_bButton1Shown = false;
        m_pButton1->setText(tr("Pause Diagnosis"));
        m_pButton2->setText(tr("Stop Diagnosis"));
        m_pStack->setCurrentWidget(m_pResult);
        if (bEntering) {
            for (VxStateItem *pItem : m_pStateItems)
                pItem->setNumber(0);
        }
        break;
    case DetectPaused:
        m_pTitle->setText(tr("Diagnosis paused"));
        m_bDetailShown = true;
        m_bProgressShown = false;
        m_bButton1Shown = true;
        m_pButton1->setText(tr("Continue Diagnosis"));
        m_pButton2->setText(tr("Stop Diagnosis"));
        break;
    case DetectAborted:
        setImage(":/Vetrix/Vetrix/DetectStop.png");
        m_pTitle->setText(tr("Diagnosis aborted."));
        m_pDetail->setText(tr("Diagnosis process aborted. Please restart diagnosis."));
        m_bDetailShown = true;
        m_bProgressShown = false;
        m_bButton1Shown = false;
        m_pButton1->setText(tr("Optimize Diagnosis"));
        m_pButton2->setText(tr("Diagnose Again"));
        break;
    case DetectFinished:
        setImage(":/Vetrix/Vetrix/DetectFinish.png");
        m_pTitle->setText(tr("Diagnosis completed."));
        m_pDetail->setText(tr("%1 items were diagnosed in %2 second(s).")
                               .arg(m_nTotal)
                               .arg(m_startTime.msecsTo(m_endTime) / 1000));
        m_bDetailShown = true;
        m_bProgressShown = false;
        m_bButton1Shown = true;
        m_pButton1->setText(tr("Optimize Diagnosis"));
        m_pButton2->setText(tr("Diagnose Again"));
        emit sigExportEnable(true);
        break;
    case Optimizing:
        startAnimation();
        m_pTitle->setText(m_strCurrentTitle);
        m_pDetail->clear();
        m_bDetailShown = false;
        m_bProgressShown = true;
        m_bButton1Shown = false;
        m_pButton1->setText(tr("Pause Optimization"));
        m_pButton2->setText(tr("Stop Optimization"));
        if (bEntering) {
            for (VxStateItem *pItem : m_pStateItems)
                pItem->setNumber(0);
        }
        break;
    case OptimizePaused:
        m_pTitle->setText(tr("Optimization paused"));
        m_bDetailShown = true;
        m_bProgressShown = false;
        m_bButton1Shown = true;
        m_pButton1->setText(tr("Resume Optimization"));
        m_pButton2->setText(tr("Stop Optimization"));
        break;
    case OptimizeStopped:
        setImage(":/Vetrix/Vetrix/DetectStop.png");
        m_pTitle->setText(tr("Optimization stopped."));
        m_pDetail->setText(m_nExceptionCount > 0
                               ? tr("%1 exception(s) are detected. Please optimize the system.").arg(m_nExceptionCount)
                               : tr("No exception."));
        m_bDetailShown = true;
        m_bProgressShown = false;
        m_bButton1Shown = false;
        m_pButton2->setText(tr("Diagnose Again"));
        break;
    case OptimizeFinished:
        setImage(":/Vetrix/Vetrix/DetectFinish.png");
        m_pTitle->setText(tr("Complete"));
        m_bDetailShown = false;
        m_bProgressShown = false;
        m_bButton1Shown = true;
        m_pButton1->setText(tr("Optimize Diagnosis"));
        m_pButton2->setText(tr("Diagnose Again"));
        for (int i = 0; i < kGrades; ++i)
            m_bCounterShown[i] = m_pResult->countOfSeverity(i) >= 1;
        emit sigExportEnable(true);
        break;
    default:
        break;
    }
    m_pCounters[0]->setText(tr("Normal: %1 Item(s)").arg(m_pResult->countOfSeverity(0)));
    m_pCounters[1]->setText(tr("Serious: %1 Item(s)").arg(m_pResult->countOfSeverity(1)));
    m_pCounters[2]->setText(tr("Fatal: %1 Item(s)").arg(m_pResult->countOfSeverity(2)));

    if (nState == DetectAborted || nState == OptimizeFinished) {
        setGroupNumbers();
        m_pButton1->setEnabled(m_nExceptionCount > 0);
    }
    m_pButton1->setVisible(m_bButton1Shown);
    rebuildBottomBar();
}

void VxOneKeyWidget::rebuildBottomBar()
{
    while (QLayoutItem *pItem = m_pBottomBar->takeAt(0))
        delete pItem; // widgets stay; only the layout items go
    m_pBottomBar->setSpacing(2);
    bool bFirst = true;
    auto add = [&](QWidget *pWidget, bool bShown) {
        pWidget->setVisible(bShown);
        if (!bShown)
            return;
        if (!bFirst)
            m_pBottomBar->addSpacing(20);
        m_pBottomBar->addWidget(pWidget);
        bFirst = false;
    };
    add(m_pProgress, m_bProgressShown);
    add(m_pDetail, m_bDetailShown);
    add(m_pCounters[2], m_bCounterShown[2]);
    add(m_pCounters[1], m_bCounterShown[1]);
    add(m_pCounters[0], m_bCounterShown[0]);
    m_pBottomBar->addStretch();
}

void VxOneKeyWidget::setGroupNumbers()
{
    for (int i = 0; i < kGrades; ++i)
        m_pStateItems[i]->setNumber(m_pResult->countOfSeverity(i));
}

void VxOneKeyWidget::startRun()
{
    m_nTotal = 0;
    m_uItemMask = 0;
    for (int nGroup : VxItems::groups()) {
        if (!(VxOneKeyWidget::selectedGroups() & nGroup))
            continue;
        m_nTotal += VxItems::displayOrder(nGroup).size();
        m_uItemMask |= VxOneKeyWidget::groupMask(nGroup);
    }
    restartRun();
}

void VxOneKeyWidget::restartRun()
{
    m_nDetectedCount = 0;
    m_nExceptionCount = 0;
    m_nOptimizedCount = 0;
    m_uExceptionMask = 0;
    m_uRepairedMask = 0;
    m_nCurrentItem = 0;
    m_pProgress->setRange(0, m_nTotal);
    m_pProgress->setValue(0);
    m_strCurrentTitle = detectTitle();
    applyState(Detecting);
    m_nPendingState = DetectFinished;
    m_pResult->clear();
    setBusyItems(m_uItemMask);
    // Items the run leaves out say why at once, and count as done.
    const VxProbeTable &table = m_pThread->probeTable();
    for (int nItem : VxItems::detectOrder()) {
        if ((m_uItemMask & quint32(nItem)) && !table.canDetect(nItem)) {
            m_pResult->setUnavailable(nItem, table.isUnreadable(nItem));
            ++m_nDetectedCount;
        }
    }
    m_pProgress->setValue(m_nDetectedCount);
    m_startTime = QTime::currentTime();
    m_pThread->startDetect(m_uItemMask);
}

void VxOneKeyWidget::startOptimization()
{
    m_nOptimizedCount = 0;
    m_uRepairedMask = 0;
    m_nCurrentItem = 0;
    m_pProgress->setRange(0, m_nExceptionCount);
    m_pProgress->setValue(0);
    m_strCurrentTitle = optimizeTitle();
    applyState(Optimizing);
    m_nPendingState = OptimizeFinished;
    setBusyItems(m_uExceptionMask);
    m_pThread->startOptimize(m_uExceptionMask);
}

void VxOneKeyWidget::onOperateClicked1()
{
    if (!allWidgetsPresent())
        return;
    switch (m_nState) {
    case Detecting:
        m_nPendingState = Idle;
        m_pThread->stop();
        applyState(DetectPaused);
        break;
    case DetectPaused:
        m_nPendingState = DetectFinished;
        applyState(Detecting);
        setBusyItems(m_pThread->pendingDetectMask());
        m_pThread->startDetect(m_pThread->pendingDetectMask());
        break;
    case DetectAborted:
    case DetectFinished:
    case OptimizeFinished:
        startOptimization();
        break;
    case Optimizing:
        setEnabled(false);
        m_nPendingState = OptimizePaused;
        m_pThread->stop();
        break;
    case OptimizePaused:
        m_nPendingState = OptimizeFinished;
        applyState(Optimizing);
        setBusyItems(m_pThread->pendingOptimizeMask());
        m_pThread->startOptimize(m_pThread->pendingOptimizeMask());
        break;
    default:
        break;
    }
}

void VxOneKeyWidget::onOperateClicked2()
{
    if (!allWidgetsPresent())
        return;
    switch (m_nState) {
    case Idle:
        startRun();
        break;
    case Detecting:
        m_nPendingState = Idle;
        m_pThread->stopDetect();
        applyState(DetectAborted);
        break;
    case DetectPaused:
        applyState(DetectAborted);
        break;
    case DetectAborted:
    case DetectFinished:
    case OptimizeStopped:
    case OptimizeFinished:
        restartRun();
        break;
    case Optimizing:
        showLoading(tr("Stop Optimizing..."));
        setEnabled(false);
        m_nPendingState = OptimizeStopped;
        m_pThread->stop();
        break;
    case OptimizePaused:
        settleRepairedItems();
        applyState(OptimizeStopped);
        break;
    default:
        break;
    }
}

void VxOneKeyWidget::showLoading(const QString &strText)
{
    if (!m_pLoading)
        return;
    m_pLoading->SetLabelText(strText);
    m_pLoading->show();
}

void VxOneKeyWidget::hideLoading()
{
    if (m_pLoading && m_pLoading->isVisible())
        m_pLoading->close();
}

QString VxOneKeyWidget::askExportPath(const QString &strDir, const QString &strName)
{
    return Custom::getSaveFileName(this, tr("Select File."), strDir, strName, QStringLiteral("log"),
                                   tr("File") + QStringLiteral("(*.log)"));
}

void VxOneKeyWidget::exportLog()
{
    if (!m_pResult)
        return;
    const QString strDir = LuInterface::userDataPath() + QStringLiteral("/Data/VetrixTool/");
    QDir().mkpath(strDir);
    const QString strName = QStringLiteral("Log_") + QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd_hhmmss"));
    const QString strPath = askExportPath(strDir, strName);
    if (strPath.isEmpty())
        return;
    if (strPath.toUtf8().size() > 256) {
        CustomMessageBox::warning(this, tr("The file path is too long."), tr("Prompt"));
        return;
    }
    if (!m_pResult->writeLog(strPath)) {
        CustomMessageBox::warning(this, tr("The file cannot be written."), tr("Prompt"));
        return;
    }
    CustomSaveDoneHintDlg hint(strPath, QCoreApplication::translate("VxOneKeyResult", "Diagnosis result is exported."),
                               this);
    hint.exec();
}

bool VxOneKeyWidget::isWorkerIdle() const
{
    return !m_pThread || !m_pThread->isRunning();
}

QString VxOneKeyWidget::titleText() const
{
    return m_pTitle ? m_pTitle->text() : QString();
}

QString VxOneKeyWidget::detailText() const
{
    return m_pDetail ? m_pDetail->text() : QString();
}

bool VxOneKeyWidget::isDetailShown() const
{
    return m_bDetailShown;
}

QString VxOneKeyWidget::groupNumberText(int nIndex) const
{
    return (nIndex >= 0 && nIndex < 3 && m_pStateItems[nIndex]) ? m_pStateItems[nIndex]->numberText() : QString();
}

void VxOneKeyWidget::changeEvent(QEvent *pEvent)
{
    if (!pEvent || pEvent->type() == QEvent::LanguageChange) {
        if (m_pEmptyText)
            m_pEmptyText->setText(tr("No data"));
        const char *const captions[3] = {QT_TR_NOOP("Normal"), QT_TR_NOOP("Serious"), QT_TR_NOOP("Fatal")};
        for (int i = 0; i < 3; ++i) {
            if (m_pStateItems[i])
                m_pStateItems[i]->setCaption(tr(captions[i]));
        }
        if (pEvent && allWidgetsPresent()) {
            // The progress title is rebuilt in the new language from the
            // current item and counts; the state is re-applied, not entered,
            // so the group numbers stay.
            if (m_nState == Detecting)
                m_strCurrentTitle = detectTitle();
            else if (m_nState == Optimizing)
                m_strCurrentTitle = optimizeTitle();
            applyState(m_nState, false);
        }
    }
    if (pEvent)
        QWidget::changeEvent(pEvent);
}
