// The one-key page shows its run state (VxOneKeyState) and forwards the
// commands of the two operate buttons to the worker; also the export.
#include "vxonekeywidget.h"

#include "custom.h"
#include "customloadingdialog.h"
#include "custommessagebox.h"
#include "custompushbutton.h"
#include "customsavedonehintdlg.h"
#include "luinterface.h"
#include "vxinterprogressbar.h"
#include "vxonekeyitems.h"
#include "vxonekeyresult.h"
#include "vxoperatethread.h"
#include "vxstateitem.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMovie>
#include <QStackedWidget>

void VxOneKeyWidget::applyFonts()
{
    QFont titleFont = m_pTitle->font();
    titleFont.setPixelSize(18);
    titleFont.setWeight(m_pRun->isTitleBold() ? QFont::Bold : QFont::Normal);
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

void VxOneKeyWidget::render(bool bAnnounce)
{
    if (!allWidgetsPresent())
        return;
    const VxOneKeyState &run = *m_pRun;
    m_pTitle->setText(run.titleText());
    m_pProgress->setRange(0, run.progressMaximum());
    m_pProgress->setValue(run.progressValue());
    for (int i = 0; i < VxOneKeyState::kGrades; ++i)
        m_pStateItems[i]->setNumber(run.groupNumber(i));
    if (!bAnnounce)
        return;
    applyFonts();
    emit sigExportEnable(false);
    renderImage();
    m_pDetail->setText(run.detailText());
    m_pButton1->setText(run.button1Text());
    m_pButton1->setEnabled(run.isButton1Enabled());
    m_pButton1->setVisible(run.isButton1Shown());
    m_pButton2->setText(run.button2Text());
    for (int i = 0; i < VxOneKeyState::kGrades; ++i)
        m_pCounters[i]->setText(run.counterText(i));
    if (run.isResultShown())
        m_pStack->setCurrentWidget(m_pResult);
    rebuildBottomBar();
    if (run.isExportEnabled())
        emit sigExportEnable(true);
}

void VxOneKeyWidget::renderImage()
{
    const QString strImage = m_pRun->imagePath();
    if (strImage == m_strShownImage)
        return;
    m_strShownImage = strImage;
    if (m_pRun->isAnimated()) {
        m_pImage->setMovie(m_pMovie);
        m_pMovie->start();
        return;
    }
    m_pMovie->stop();
    m_pImage->setMovie(nullptr);
    m_pImage->setPixmap(QIcon(strImage).pixmap(m_pImage->size()));
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
    add(m_pProgress, m_pRun->isProgressShown());
    add(m_pDetail, m_pRun->isDetailShown());
    for (int nGrade = VxOneKeyState::kGrades - 1; nGrade >= 0; --nGrade)
        add(m_pCounters[nGrade], m_pRun->isCounterShown(nGrade));
    m_pBottomBar->addStretch();
}

void VxOneKeyWidget::follow(const VxOneKeyStep &step)
{
    if (!step.bTaken)
        return;
    render(step.bEntered);
    forward(step);
}

void VxOneKeyWidget::forward(const VxOneKeyStep &step)
{
    switch (step.command) {
    case VxWorkerCommand::None:
        break;
    case VxWorkerCommand::StartDetect:
        m_pResult->clear();
        setBusyItems(step.uMask);
        for (int nItem : m_pRun->leftOutItems())
            m_pResult->setUnavailable(nItem, m_pItems->isUnreadable(nItem));
        m_pThread->startDetect(step.uMask);
        break;
    case VxWorkerCommand::ResumeDetect: {
        const quint32 uMask = m_pThread->pendingDetectMask();
        setBusyItems(uMask);
        m_pThread->startDetect(uMask);
        break;
    }
    case VxWorkerCommand::PauseDetect:
        m_pThread->stop();
        break;
    case VxWorkerCommand::StopDetect:
        m_pThread->stopDetect();
        break;
    case VxWorkerCommand::StartOptimize:
        setBusyItems(step.uMask);
        m_pThread->startOptimize(step.uMask);
        break;
    case VxWorkerCommand::ResumeOptimize: {
        const quint32 uMask = m_pThread->pendingOptimizeMask();
        setBusyItems(uMask);
        m_pThread->startOptimize(uMask);
        break;
    }
    case VxWorkerCommand::PauseOptimize:
        // No second request until the worker reports the end.
        setEnabled(false);
        m_pThread->stop();
        break;
    case VxWorkerCommand::StopOptimize:
        showLoading(tr("Stop Optimizing..."));
        setEnabled(false);
        m_pThread->stop();
        break;
    }
}

void VxOneKeyWidget::onOperateClicked1()
{
    if (!allWidgetsPresent())
        return;
    // Cancelled: nothing changes and the page stays as it is.
    if (m_pRun->button1StartsOptimization() && !confirmOptimization())
        return;
    follow(m_pRun->clickButton1());
}

void VxOneKeyWidget::onOperateClicked2()
{
    if (allWidgetsPresent())
        follow(m_pRun->clickButton2());
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
    return m_pRun && m_pRun->isDetailShown();
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
        // The state is shown again in the new language, not entered: the
        // group numbers and the progress stay.
        if (pEvent)
            render(true);
    }
    if (pEvent)
        QWidget::changeEvent(pEvent);
}
